#include "standalone/files/LineReader.hpp"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tessgen::standalone {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t blockSize = std::size_t{1} << 14U;

// As the system's `read`. Waits while a non-blocking descriptor has nothing.
ssize_t readSome(int descriptor, char* bytes, std::size_t size) {
    for (;;) {
        const auto count = read(descriptor, bytes, size);
        if (count >= 0 || (errno != EINTR && errno != EAGAIN)) {
            return count;
        }
        if (errno == EAGAIN) {
            pollfd readable{descriptor, POLLIN, 0};
            poll(&readable, 1, -1);
        }
    }
}

} // namespace

LineReader::LineReader(const std::string& file, char end)
    : end_(end), file_(file), own_(open(file.c_str(), O_RDONLY | O_CLOEXEC)), descriptor_(own_.get()) {
    if (!own_.isOpen()) {
        fail("cannot be opened");
    }
}

LineReader LineReader::ofStandardInput(char end) {
    return LineReader(end);
}

LineReader LineReader::ofInput(const std::string& file, char end) {
    return file == "-" ? ofStandardInput(end) : LineReader(file, end);
}

std::optional<std::string_view> LineReader::next() {
    if (std::exchange(skips_, false)) {
        skipRest();
    }
    const auto end = endOfLine();
    if (begin_ == buffer_.size()) {
        return std::nullopt;
    }
    const auto length = (end == std::string::npos ? buffer_.size() : end + 1) - begin_;
    auto line = std::string_view(buffer_).substr(begin_, length);
    begin_ += length;
    ++number_;
    bytes_ += length;
    if (line.size() > longestLine + (end == std::string::npos ? 0 : 1)) {
        throw LineTooLong(place());
    }
    if (end_ == '\0') {
        return line.substr(0, line.size() - (end == std::string::npos ? 0 : 1));
    }
    if (number_ == 1 && line.starts_with(byteOrderMark)) {
        line.remove_prefix(byteOrderMark.size());
    }
    return line.substr(0, line.find_last_not_of("\r\n") + 1);
}

std::size_t LineReader::endOfLine() {
    auto end = buffer_.find(end_, begin_);
    while (end == std::string::npos && !isAtEnd_) {
        const auto looked = buffer_.size() - begin_;
        if (looked > longestLine) {
            ++number_;
            skips_ = true;
            throw LineTooLong(place());
        }
        readBlock();
        end = buffer_.find(end_, looked);
    }
    return end;
}

void LineReader::skipRest() {
    auto end = std::string::npos;
    do {
        end = buffer_.find(end_, begin_);
        const auto skipped = (end == std::string::npos ? buffer_.size() : end + 1) - begin_;
        begin_ += skipped;
        bytes_ += skipped;
        if (end == std::string::npos && !isAtEnd_) {
            readBlock();
        }
    } while (end == std::string::npos && begin_ < buffer_.size());
}

void LineReader::readBlock() {
    buffer_.erase(0, std::exchange(begin_, 0));
    const auto kept = buffer_.size();
    buffer_.resize(kept + blockSize);
    const auto count = readSome(descriptor_, buffer_.data() + kept, blockSize);
    if (count < 0) {
        fail("cannot be read");
    }
    buffer_.resize(kept + static_cast<std::size_t>(count));
    isAtEnd_ = count == 0;
}

std::optional<std::uint64_t> LineReader::size() const {
    struct stat status {};
    const bool isKnown = fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
    return isKnown ? std::optional(static_cast<std::uint64_t>(status.st_size)) : std::nullopt;
}

bool LineReader::mayWait() const {
    return !isAtEnd_ && buffer_.find(end_, begin_) == std::string::npos;
}

void LineReader::fail(const char* what) const {
    throw std::runtime_error(file_ + ": " + what + ": " + std::generic_category().message(errno));
}

void forEachLine(LineReader& lines, const std::function<void(std::string_view line)>& take,
                 const std::function<void(const char* reason)>& refuse) {
    for (bool isAtEnd = false; !isAtEnd;) {
        std::optional<std::string_view> line;
        try {
            line = lines.next();
        } catch (const LineTooLong&) {
            refuse(LineTooLong::message);
            continue;
        }
        isAtEnd = !line;
        try {
            if (line) {
                take(*line);
            }
        } catch (const std::runtime_error& error) {
            refuse(error.what());
        }
    }
}

} // namespace tessgen::standalone
