#include "cli/Console.hpp"

#include "cli/Escape.hpp"
#include "cli/Reason.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <utf8.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <exception>
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

// A complaint in JSON is held until it is known whether it is the last one; what is still to come is `}}`.
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
    const bool isUTF8 = utf8::is_valid(text.begin(), text.end());
    return escapedJSON(nlohmann::json(isUTF8 ? std::string(text) : escaped(text)).dump());
}

void hold(std::string_view members, std::string_view message) {
    auto text = fmt::format(R"({{"schema":"kelwhich/1",{}"error":{{"message":{})", members, jsonText(message));
    writeHeld("", "");
    complaints.held = std::move(text);
    complaints.holds = true;
}

} // namespace

void prepareStreams() {
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        // NOLINTNEXTLINE(cert-err33-c): ignoring these signals cannot fail
        std::signal(signal, SIG_IGN);
    }
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0) {
            // Takes the free number. Read-only: writing to it fails, as it should.
            open("/dev/null", O_RDONLY);
        }
    }
}

void writeOut(std::string_view text) {
    if (const int error = writeAll(STDOUT_FILENO, text)) {
        throw std::runtime_error("cannot write to standard output: " + std::generic_category().message(error));
    }
}

void complain(std::string_view message) {
    if (complaints.inJSON) {
        hold("", message);
    } else {
        writeAll(STDERR_FILENO, fmt::format("kelwhich: {}\n", escaped(message)));
    }
}

void complainOf(std::string_view query, std::string_view message) {
    if (complaints.inJSON) {
        hold(fmt::format(R"("query":{},)", jsonText(query)), message);
    } else {
        complain(fmt::format("'{}': {}", query, message));
    }
}

void complainInJSON() {
    complaints.inJSON = true;
}

void complainOfFailure() noexcept {
    try {
        try {
            throw;
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& error) {
            complain(reasonOf(error));
        } catch (...) {
            complain("stopped by something unknown");
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

void endComplaints(int exitCode) noexcept {
    const char digit = static_cast<char>('0' + exitCode);
    writeHeld(R"(,"exit":)", {&digit, 1});
}

bool outputIsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

void showStatus(std::string_view text) {
    writeAll(STDERR_FILENO, fmt::format("\r\x1B[K{}", escaped(text)));
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

} // namespace tessgen::cli
