// Writes a file in one step: whoever opens the target finds its old content or all of the new, even after a crash.
//
// The new content is written to a hidden file beside the target, which stays locked meanwhile. The hidden file of a
// process that was killed is removed by the next AtomicFile in the same folder. Only a file of the same kind is
// replaced. Threads: one. Errors: std::runtime_error, one line that names the file and the cause.
#pragma once

#include "standalone/files/Descriptor.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace tessgen::standalone {

// The files that may be replaced. An empty file always may.
struct Replaceable {
    std::string_view kind; // in errors: "a support store"
    std::string_view key;  // the option or key that names the file
    bool (*recognises)(const std::string& file);
};
inline constexpr Replaceable anyFile{"a file", "", [](const std::string& /*file*/) { return true; }};

// The status of the file that is to be replaced; nothing when there is none.
// Errors: it is not a regular file, or `replaceable` does not recognise it.
std::optional<struct stat> requireReplaceable(const std::string& target, const Replaceable& replaceable);

class AtomicFile {
public:
    // When `target` is a link, the file that it leads to is replaced. The new file gets the mode of the old one and, as
    // far as the system allows, its owner and group.
    // Lifetime: `replaceable` outlives the object.
    // Errors: the target must not be replaced, or is a dangling link; the folder cannot be written to.
    AtomicFile(const std::string& target, const Replaceable& replaceable);
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    // Removes the hidden file unless it was committed.
    ~AtomicFile();

    void append(std::string_view bytes);
    // Replaces bytes that were appended before.
    void overwrite(std::uint64_t position, std::string_view bytes);
    // Bytes that were appended before.
    [[nodiscard]] std::string read(std::uint64_t position, std::size_t length);

    // Writes the content through to the disk, then replaces the target.
    // Errors: the target must not be replaced, as it is by then.
    void commit();
    // The same, but returns false and replaces nothing when there is a target by then.
    [[nodiscard]] bool commitIfAbsent();

    // Throws an error that names the target and says why it was not replaced; `error` is the system's number.
    [[noreturn]] void fail(const std::string& cause) const;
    [[noreturn]] void fail(int error) const;

private:
    void create(unsigned mode);
    void flush();
    void sync();
    void write(std::uint64_t position, std::string_view bytes) const;
    void copyOwnerAndMode(const struct stat& old) const;

    std::string target_;
    const Replaceable* replaceable_;
    std::string path_; // of the hidden file; empty once it was committed
    Descriptor descriptor_;
    std::string buffer_; // appended and not yet written
    std::uint64_t written_ = 0;
};

} // namespace tessgen::standalone
