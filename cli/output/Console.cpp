#include "cli/output/Console.hpp"

#include "cli/output/Escape.hpp"
#include "standalone/files/FileTree.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace tessgen::cli {

namespace {

// The error's number, or 0 when all was written. A descriptor that does not block is waited for.
int writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const auto written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EAGAIN) {
            pollfd writable{descriptor, POLLOUT, 0};
            poll(&writable, 1, -1);
        } else if (written < 0 && errno != EINTR) {
            return errno;
        }
        text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return 0;
}

bool isAbleTerminal(int descriptor) {
    const auto terminal = environment("TERM");
    return isatty(descriptor) == 1 && !terminal.empty() && terminal != "dumb";
}

// A complaint in JSON that may be the last one is held until that is known; what is still to come is `}}`.
struct {
    bool inJSON = false;
    bool holds = false;
    std::string held; // empty when its text was written already
} complaints;         // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): of the process, as the stream is

void writeHeld(std::string_view key, std::string_view value) noexcept {
    if (std::exchange(complaints.holds, false)) {
        writeAll(STDERR_FILENO, complaints.held);
        writeAll(STDERR_FILENO, key);
        writeAll(STDERR_FILENO, value);
        writeAll(STDERR_FILENO, "}}\n");
        complaints.held.clear();
    }
}

std::string jsonText(std::string_view text) {
    return escapedJSON(nlohmann::json(forJSON(text)).dump());
}

std::string beginInJSON(std::string_view members, std::string_view message) {
    return fmt::format(R"({{"schema":"kelwhich/1",{}"error":{{"message":{})", members, jsonText(message));
}

// `inJSON`: all but the last `}}`.
void writeAtOnce(std::string_view inText, std::string_view inJSON) {
    writeHeld("", "");
    writeAll(STDERR_FILENO,
             complaints.inJSON ? fmt::format("{}}}}}\n", inJSON) : fmt::format("kelwhich: {}\n", escaped(inText)));
}

} // namespace

void prepareStreams() {
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        // NOLINTNEXTLINE(cert-err33-c): ignoring these signals cannot fail
        std::signal(signal, SIG_IGN);
    }
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0) {
            // Takes the free number, for what is not done with it: that fails, as it should.
            open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

void writeOut(std::string_view text) {
    if (const int error = writeAll(STDOUT_FILENO, text)) {
        throw std::runtime_error("cannot write to standard output: " + std::generic_category().message(error));
    }
}

void reportError(std::string_view message) {
    if (complaints.inJSON) {
        auto text = beginInJSON("", message);
        writeHeld("", "");
        complaints.held = std::move(text);
        complaints.holds = true;
    } else {
        writeAtOnce(message, "");
    }
}

void reportErrorOf(std::string_view query, std::string_view message) {
    if (complaints.inJSON) {
        writeAtOnce("", beginInJSON(fmt::format(R"("query":{},)", jsonText(query)), message));
    } else {
        writeAtOnce(fmt::format("{}: {}", shownName(query), message), "");
    }
}

void reportErrorOfLine(std::string_view place, std::string_view message) {
    const auto text = fmt::format("{} {}", place, message);
    writeAtOnce(text, complaints.inJSON ? beginInJSON("", text) : "");
}

std::string shownName(std::string_view name) {
    constexpr std::size_t longest = 200; // bytes
    return name.size() <= longest ? fmt::format("'{}'", name) : fmt::format("a name of {} bytes", name.size());
}

void reportErrorsInJSON() {
    complaints.inJSON = true;
}

bool reportsErrorsInJSON() {
    return complaints.inJSON;
}

void reportFailure() noexcept {
    try {
        try {
            throw;
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& error) {
            reportError(errorMessage(error));
        } catch (...) {
            reportError("stopped by something unknown");
        }
    } catch (...) { // memory is out: nothing is made from here on
        if (complaints.inJSON) {
            writeHeld("", "");
            writeAll(STDERR_FILENO, R"({"schema":"kelwhich/1","error":{"message":"out of memory")");
            complaints.holds = true;
        } else {
            writeAll(STDERR_FILENO, "kelwhich: out of memory\n");
        }
    }
}

void flushErrors(int exitCode) noexcept {
    const char digit = static_cast<char>('0' + exitCode);
    writeHeld(R"(,"exit":)", {&digit, 1});
}

bool outputIsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

void showStatus(std::string_view text) {
    winsize terminal{};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &terminal) == 0 && terminal.ws_col > 0;
    const std::size_t columns = isKnown ? terminal.ws_col : 80;
    writeAll(STDERR_FILENO, fmt::format("\r\x1B[K{}", escaped(text).substr(0, columns - 1)));
}

bool statusCanBeShown() {
    return isAbleTerminal(STDERR_FILENO);
}

bool outputIsColoured() {
    return isAbleTerminal(STDOUT_FILENO) && environment("NO_COLOR").empty();
}

std::string environment(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nothing here sets a variable
    return value == nullptr ? std::string() : std::string(value);
}

std::string errorMessage(const std::exception& error) {
    if (const auto* const unknown = dynamic_cast<const std::filesystem::filesystem_error*>(&error)) {
        return fmt::format("{}: cannot be looked for: {}{}", standalone::shownPath(unknown->path1().string()),
                           unknown->code().message(), standalone::adviceOn(unknown->code().value()));
    }
    return error.what();
}

} // namespace tessgen::cli
