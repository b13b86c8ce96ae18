// A file that takes the place of another one whole, or not at all.
//
// It is written under a name of its own in the same folder. Whoever opens the target finds the old content or the
// new one, whenever this process or the machine stops.
// Errors: std::runtime_error, one line that names the file and the cause.
#pragma once

#include <string>
#include <string_view>

namespace tessgen::standalone {

class NewFile {
public:
    // Makes the new file, readable and writable. A target that is a link is what the link leads to.
    // Errors: the target is there and is not a regular file; the folder cannot be written to.
    explicit NewFile(const std::string& target);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    // Removes the new file unless it has taken the target's place.
    ~NewFile();

    int descriptor() const { return descriptor_; }

    // Errors: not all of it could be written.
    void append(std::string_view text);

    // Waits until the disk has the content, then replaces the target.
    void replaceTarget();

    // Throws an error that names the target and says why it was not replaced; `error` is an errno.
    [[noreturn]] void fail(const std::string& cause) const;
    [[noreturn]] void fail(int error) const;

private:
    std::string target_;
    std::string path_; // empty once it has the target's name
    int descriptor_ = -1;
};

} // namespace tessgen::standalone
