#include "cli/output/Console.hpp"

#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "standalone/files/FileErrors.hpp"

#include <fmt/format.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <chrono>
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

// Returns the number of the error, or 0 when everything was written. Waits while a non-blocking descriptor is full.
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

bool isCapableTerminal(int descriptor) {
    const auto terminal = environment("TERM");
    return isatty(descriptor) == 1 && !terminal.empty() && terminal != "dumb";
}

std::string_view colourWhen = "auto"; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): as `errors`

bool isColoured(int descriptor) {
    if (colourWhen != "auto") {
        return colourWhen == "always";
    }
    if (!environment("NO_COLOR").empty()) {
        return false;
    }
    const auto forced = environment("FORCE_COLOR");
    return (!forced.empty() && forced != "0") || isCapableTerminal(descriptor);
}

// The last JSON error carries the exit code, so each is held back, without its closing braces, until the next one or
// the end.
struct {
    bool inJSON = false;
    bool isPending = false;
    std::string pending; // empty when its text is written already
} errors;                // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): one a process, like the stream

// Writes the pending error with one more member of its object, if `key` is not empty.
void writePending(std::string_view key, std::string_view value) noexcept {
    if (std::exchange(errors.isPending, false)) {
        writeAll(STDERR_FILENO, errors.pending);
        writeAll(STDERR_FILENO, key);
        writeAll(STDERR_FILENO, value);
        writeAll(STDERR_FILENO, "}}\n");
        errors.pending.clear();
    }
}

// The object of an error or a note without its closing braces.
std::string openJSON(std::string_view members, std::string_view message, std::string_view kind = "error") {
    return fmt::format(R"({{"schema":"kelwhich/1",{}"{}":{{"message":{})", members, kind, printJSONString(message));
}

// `openObject`: from `openJSON`; used when errors are JSON.
void writeNow(std::string_view text, std::string_view openObject) {
    writePending("", "");
    const auto style = outputStyle(!errors.inJSON && isColoured(STDERR_FILENO));
    writeAll(STDERR_FILENO, errors.inJSON ? fmt::format("{}}}}}\n", openObject)
                                          : fmt::format("{}kelwhich:{} {}\n", style.error, style.end, escaped(text)));
}

} // namespace

void prepareStreams() {
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        // NOLINTNEXTLINE(cert-err33-c): ignoring these signals cannot fail
        std::signal(signal, SIG_IGN);
    }
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0) {
            // Occupy the closed descriptor in the wrong mode so that using it fails.
            open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

void endByBrokenPipe() noexcept {
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_UNBLOCK, &brokenPipe, nullptr); // the caller may have blocked it
    std::signal(SIGPIPE, SIG_DFL);                      // NOLINT(cert-err33-c): cannot fail
    std::raise(SIGPIPE);                                // NOLINT(cert-err33-c): does not return
    std::_Exit(128 + SIGPIPE);                          // except in the first process of a container
}

void writeOut(std::string_view text) {
    const int error = writeAll(STDOUT_FILENO, text);
    if (error == EPIPE) {
        throw ReaderGone();
    }
    if (error != 0) {
        throw std::runtime_error("cannot write to standard output: " + std::generic_category().message(error));
    }
}

void reportError(std::string_view message) {
    if (errors.inJSON) {
        auto text = openJSON("", message);
        writePending("", "");
        errors.pending = std::move(text);
        errors.isPending = true;
    } else {
        writeNow(message, "");
    }
}

void reportErrorAbout(std::string_view query, std::string_view message) {
    if (errors.inJSON) {
        writeNow("", openJSON(fmt::format(R"("query":{},)", printJSONString(query)), message));
    } else {
        writeNow(fmt::format("{}: {}", shownName(query), message), "");
    }
}

void reportErrorInLine(std::string_view place, std::string_view message) {
    const auto text = fmt::format("{} {}", place, message);
    writeNow(text, errors.inJSON ? openJSON("", text) : "");
}

void reportNote(std::string_view message) {
    writeNow(fmt::format("note: {}", message), errors.inJSON ? openJSON("", message, "note") : "");
}

std::string shownName(std::string_view name) {
    constexpr std::size_t longest = 200; // bytes
    return name.size() <= longest ? fmt::format("'{}'", name) : fmt::format("a name of {} bytes", name.size());
}

void reportErrorsInJSON() {
    errors.inJSON = true;
}

bool reportsErrorsInJSON() {
    return errors.inJSON;
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
            reportError("unknown error");
        }
    } catch (...) { // out of memory: allocate nothing from here on
        if (errors.inJSON) {
            writePending("", "");
            writeAll(STDERR_FILENO, R"({"schema":"kelwhich/1","error":{"message":"out of memory")");
            errors.isPending = true;
        } else {
            writeAll(STDERR_FILENO, "kelwhich: out of memory\n");
        }
    }
}

void flushErrors(int exitCode) noexcept {
    const char digit = static_cast<char>('0' + exitCode);
    writePending(R"(,"exit":)", {&digit, 1});
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
    return isCapableTerminal(STDERR_FILENO);
}

void setColour(std::string_view when) {
    for (const std::string_view word : {"auto", "always", "never"}) {
        if (when == word) {
            colourWhen = word;
            return;
        }
    }
    throw std::runtime_error(
        fmt::format("--color: unknown word '{}'; use auto, always or never; see kelwhich --help", when));
}

bool outputIsColoured() {
    return isColoured(STDOUT_FILENO);
}

std::string environment(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nothing here sets a variable
    return value == nullptr ? std::string() : std::string(value);
}

std::chrono::milliseconds environmentMilliseconds(const char* name, std::chrono::milliseconds fallback) {
    const auto text = environment(name);
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isNumber = !text.empty() && error == std::errc() && end == text.data() + text.size();
    return isNumber ? std::chrono::milliseconds(value) : fallback;
}

std::string errorMessage(const std::exception& error) {
    if (const auto* const unknown = dynamic_cast<const std::filesystem::filesystem_error*>(&error)) {
        return fmt::format("{}: cannot be looked up: {}{}", standalone::shownPath(unknown->path1().string()),
                           unknown->code().message(), standalone::adviceOn(unknown->code().value()));
    }
    return error.what();
}

} // namespace tessgen::cli
