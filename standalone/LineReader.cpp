#include "standalone/LineReader.hpp"

#include <cerrno>
#include <cstdlib>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace tessgen::standalone {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

} // namespace

LineReader::LineReader(std::string file, Stream stream) : file_(std::move(file)), stream_(std::move(stream)) {
    if (!stream_) {
        fail("cannot be opened");
    }
}

LineReader::LineReader(const std::string& file) : LineReader(file, {std::fopen(file.c_str(), "re"), std::fclose}) {}

LineReader LineReader::ofStandardInput() {
    return {"standard input", {stdin, [](std::FILE*) { return 0; }}};
}

LineReader::~LineReader() {
    std::free(line_); // getline allocates it
}

std::optional<std::string_view> LineReader::next() {
    const auto length = getline(&line_, &capacity_, stream_.get());
    // After an error, getline may return the part of a line that was read before it.
    if (std::ferror(stream_.get()) != 0 || (length < 0 && std::feof(stream_.get()) == 0)) {
        fail("cannot be read");
    }
    if (length < 0) {
        return std::nullopt;
    }
    ++number_;
    std::string_view line(line_, static_cast<std::size_t>(length));
    if (number_ == 1 && line.starts_with(byteOrderMark)) {
        line.remove_prefix(byteOrderMark.size());
    }
    return line.substr(0, line.find_last_not_of("\r\n") + 1);
}

std::optional<std::uint64_t> LineReader::size() const {
    struct stat status {};
    const bool isKnown = fstat(fileno(stream_.get()), &status) == 0 && S_ISREG(status.st_mode);
    return isKnown ? std::optional(static_cast<std::uint64_t>(status.st_size)) : std::nullopt;
}

bool LineReader::mayWait() const {
    pollfd readable{fileno(stream_.get()), POLLIN, 0};
    return poll(&readable, 1, 0) == 0;
}

void LineReader::fail(const char* what) const {
    throw std::runtime_error(file_ + ": " + what + ": " + std::generic_category().message(errno));
}

} // namespace tessgen::standalone
