#include "cli/lsp/Frames.hpp"

#include "standalone/text/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <poll.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tessgen::cli {

namespace {

constexpr std::string_view lengthField = "content-length:"; // in any case of letters
constexpr std::string_view endOfHead = "\r\n\r\n";

// The number after the name of a field; nothing when it is none, or too large for any message.
std::optional<std::size_t> numberOf(std::string_view value) {
    value.remove_prefix(std::min(value.find_first_not_of(" \t"), value.size()));
    value.remove_suffix(value.size() - std::min(value.find_last_not_of(" \t") + 1, value.size()));
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    const bool isNumber = !value.empty() && error == std::errc() && end == value.data() + value.size();
    return isNumber ? std::optional<std::size_t>(number) : std::nullopt;
}

// The length that a head without its end gives; nothing unless it gives one.
std::optional<std::size_t> lengthIn(std::string_view head) {
    std::optional<std::size_t> length;
    for (const auto& line : standalone::split(head, '\n')) {
        const std::string_view field(line.data(), line.size() - (line.ends_with('\r') ? 1 : 0));
        if (standalone::inLowerCase(field.substr(0, lengthField.size())) != lengthField) {
            continue;
        }
        const auto number = numberOf(field.substr(lengthField.size()));
        if (!number || length) {
            return std::nullopt;
        }
        length = number;
    }
    return length;
}

} // namespace

void FrameParser::add(std::string_view bytes) {
    const auto skipped = std::min(skipped_, bytes.size());
    skipped_ -= skipped;
    if (begin_ > bytes_.size() / 2) {
        bytes_.erase(0, begin_);
        begin_ = 0;
    }
    bytes_.append(bytes.substr(skipped));
}

void FrameParser::drop(std::size_t count) {
    const auto there = std::min(count, rest().size());
    begin_ += there;
    skipped_ = count - there;
}

std::optional<Frame> FrameParser::next() {
    if (length_) {
        return takeBody();
    }
    if (seeks_ && !seekHead()) {
        return std::nullopt;
    }
    const auto head = rest().substr(0, longestHead);
    const auto size = head.find(endOfHead);
    if (size != std::string_view::npos) {
        return endHead(size, size + endOfHead.size());
    }
    if (head.size() == longestHead) {
        drop(1); // so that this beginning is not found again
        seeks_ = true;
        return Frame{"", "a head of more than 4 KiB"};
    }
    return std::nullopt;
}

// Whether a head begins at what is left.
bool FrameParser::seekHead() {
    const auto bytes = rest();
    const auto* const found = std::search(bytes.begin(), bytes.end(), lengthField.begin(), lengthField.end(),
                                          [](char a, char b) { return ('A' <= a && a <= 'Z' ? a + 0x20 : a) == b; });
    seeks_ = found == bytes.end();
    // The last bytes may be the beginning of one.
    const auto skipped = seeks_ ? bytes.size() - std::min(bytes.size(), lengthField.size() - 1)
                                : static_cast<std::size_t>(found - bytes.begin());
    drop(skipped);
    return !seeks_;
}

std::optional<Frame> FrameParser::endHead(std::size_t size, std::size_t end) {
    const auto length = lengthIn(rest().substr(0, size));
    drop(end);
    if (!length) {
        seeks_ = true;
        return Frame{"", "a head without one valid Content-Length"};
    }
    if (*length > longestBody) {
        drop(*length);
        return Frame{"", "a message of more than 64 MiB"};
    }
    length_ = length;
    return takeBody();
}

std::optional<Frame> FrameParser::takeBody() {
    if (rest().size() < *length_) {
        return std::nullopt;
    }
    Frame frame{std::string(rest().substr(0, *length_))};
    drop(*length_);
    length_.reset();
    return frame;
}

std::string framed(std::string_view body) {
    return fmt::format("Content-Length: {}\r\n\r\n{}", body.size(), body);
}

bool FrameReader::wait(std::initializer_list<int> others, int milliseconds) {
    std::vector<pollfd> polled = {{isAtEnd_ ? -1 : descriptor_, POLLIN, 0}}; // the system passes over negative ones
    for (const int other : others) {
        polled.push_back({other, POLLIN, 0});
    }
    if (poll(polled.data(), polled.size(), milliseconds) < 0 && errno != EINTR) {
        throw std::system_error(errno, std::generic_category(), "standard input");
    }
    if (polled.front().revents == 0) {
        return false;
    }
    std::array<char, std::size_t{1} << 16U> block{};
    const auto size = read(descriptor_, block.data(), block.size());
    if (size > 0) {
        parser_.add({block.data(), static_cast<std::size_t>(size)});
    } else if (size == 0) {
        isAtEnd_ = true;
    } else if (errno != EINTR && errno != EAGAIN) {
        throw std::system_error(errno, std::generic_category(), "standard input");
    }
    return size >= 0;
}

} // namespace tessgen::cli
