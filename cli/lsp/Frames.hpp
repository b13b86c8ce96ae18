// The frames of messages: "Content-Length: N", perhaps more lines of a head, an empty line, and N bytes.
//
// Threads: one.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::cli {

// The bytes of a frame, or what is wrong where a frame should be.
struct Frame {
    std::string body;
    std::string_view problem = {};
};

// Takes frames out of a stream of bytes. After a problem it goes on with the next "Content-Length:".
class FrameParser {
public:
    static constexpr std::size_t longestHead = std::size_t{1} << 12U; // bytes
    static constexpr std::size_t longestBody = std::size_t{1} << 26U; // a longer one is a problem and is skipped

    void add(std::string_view bytes);

    // Nothing until more bytes are added.
    std::optional<Frame> next();

    // Whether what was added ends within a frame.
    [[nodiscard]] bool isWithinFrame() const { return !rest().empty() || skipped_ > 0; }

private:
    [[nodiscard]] std::string_view rest() const { return std::string_view(bytes_).substr(begin_); }
    void drop(std::size_t count);
    bool seekHead();
    std::optional<Frame> endHead(std::size_t size, std::size_t end);
    std::optional<Frame> takeBody();

    std::string bytes_; // from `begin_` on, those that are not taken yet
    std::size_t begin_ = 0;
    std::optional<std::size_t> length_; // of the body that follows; none in a head
    std::size_t skipped_ = 0;           // bytes still to come that are skipped
    bool seeks_ = false;                // a head, after a problem
};

// The message as a frame.
std::string framed(std::string_view body);

// Reads frames from a descriptor, and waits for it and for others at once.
class FrameReader {
public:
    explicit FrameReader(int descriptor) : descriptor_(descriptor) {}

    // Waits until there is input, one of `others` is readable, or so many milliseconds have passed (-1: for ever), and
    // reads what is there. Negative descriptors are passed over. Returns whether there was input, or its end.
    // Errors: std::system_error when the input cannot be read.
    bool wait(std::initializer_list<int> others, int milliseconds);

    std::optional<Frame> next() { return parser_.next(); }
    [[nodiscard]] bool isAtEnd() const { return isAtEnd_; }
    // Once it is at its end: whether it ended within a frame.
    [[nodiscard]] bool isCutOff() const { return parser_.isWithinFrame(); }

private:
    int descriptor_;
    bool isAtEnd_ = false;
    FrameParser parser_;
};

} // namespace tessgen::cli
