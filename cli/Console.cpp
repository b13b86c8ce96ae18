#include "cli/Console.hpp"

#include "cli/Escape.hpp"

#include <fmt/format.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

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

} // namespace

void prepareStreams() {
    // NOLINTNEXTLINE(cert-err33-c): ignoring this signal cannot fail
    std::signal(SIGPIPE, SIG_IGN);
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

void writeStatus(std::string_view text) {
    writeAll(STDERR_FILENO, text);
}

void complain(std::string_view message) {
    writeAll(STDERR_FILENO, fmt::format("kelwhich: {}\n", escaped(message)));
}

bool outputIsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

bool statusIsShown() {
    const auto terminal = environment("TERM");
    return isatty(STDERR_FILENO) == 1 && !outputIsTerminal() && !terminal.empty() && terminal != "dumb";
}

bool outputIsColoured() {
    const auto terminal = environment("TERM");
    return outputIsTerminal() && environment("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb";
}

std::string environment(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nothing here sets a variable
    return value == nullptr ? std::string() : std::string(value);
}

} // namespace tessgen::cli
