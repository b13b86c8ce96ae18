// A file that takes the place of another one whole, or not at all.
//
// It is written under a name of its own in the same folder, and locked for as long as it is being written. Whoever
// opens the target finds the old content or the new one, whenever this process or the machine stops; what a process
// that was killed has left, the next one that writes into the folder removes.
// Threads: one.
// Errors: std::runtime_error, one line that names the file and the cause.
#pragma once

#include "standalone/files/Descriptor.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace tessgen::standalone {

class AtomicFile {
public:
    // A target that is a link is what the link leads to. The file gets the mode and, if the system lets us, the owner
    // and the group of the one that it replaces.
    // Errors: the target is there and is not a regular file, or is a link that leads nowhere; the folder cannot be
    // written to.
    explicit AtomicFile(const std::string& target);
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    // Removes the new file unless it has taken the target's place.
    ~AtomicFile();

    void append(std::string_view bytes);
    // Writes over what was appended.
    void overwrite(std::uint64_t position, std::string_view bytes);
    // Reads what was appended.
    std::string read(std::uint64_t position, std::size_t length);

    // Waits until the disk has the content, then replaces the target.
    void commit();
    // The same, but only where there is no target by then. False when there is one, which stays.
    [[nodiscard]] bool commitIfAbsent();

    // Throws an error that names the target and says why it was not replaced; `error` is an errno.
    [[noreturn]] void fail(const std::string& cause) const;
    [[noreturn]] void fail(int error) const;

private:
    void create(unsigned mode);
    void flush();
    void sync();
    void write(std::uint64_t position, std::string_view bytes) const;
    void copyOwnerAndMode(const struct stat& old) const;

    std::string target_;
    std::optional<struct stat> old_; // the target's, when there is one
    std::string path_;               // empty once it has the target's name
    Descriptor descriptor_;
    std::string buffer_; // appended and not yet written
    std::uint64_t written_ = 0;
};

} // namespace tessgen::standalone
