// What the disk failed at, in words for a user: the path, the system's reason, and what to do.
//
// Threads: any.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace tessgen::standalone {

// The disk failed to read a path. Unlike that of std::system_error, its text ends with what to do where there is
// general advice.
class DiskError final : public std::system_error {
public:
    DiskError(int error, const std::string& path);
    [[nodiscard]] const char* what() const noexcept override { return line_.what(); }

private:
    std::runtime_error line_; // holds the text, since copying it does not throw
};

// A path as an error shows it. A path longer than any on the disk is replaced by its length.
[[nodiscard]] std::string shownPath(const std::string& path);

// What a user can do about an error number of the system: the end of a line that names the path. Empty when there is no
// general advice.
[[nodiscard]] std::string_view adviceOn(int error);

} // namespace tessgen::standalone
