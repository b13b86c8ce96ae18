#include "standalone/LineReader.hpp"

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

namespace tessgen::standalone {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

} // namespace

LineReader::LineReader(const std::string& file) : file_(file), stream_(std::fopen(file.c_str(), "re"), std::fclose) {
    if (!stream_) {
        fail("cannot be opened");
    }
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

void LineReader::fail(const char* what) const {
    throw std::runtime_error(file_ + ": " + what + ": " + std::generic_category().message(errno));
}

} // namespace tessgen::standalone
