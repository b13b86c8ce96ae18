// What the resolver knows of the disk and of the installation. RealFileSystem asks the machine and the host;
// CachedFileSystemAdaptor caches answers.
//
// Paths are absolute UTF-16 texts with "/" as separator, compared code unit by code unit.
// Threads: const operations may be called concurrently on every implementation of this library.
// Errors: an implementation that cannot find the answer throws an exception of its own; it never guesses.
#pragma once

#include "tessgen/kelwhich/export.hpp"

#include <optional>
#include <string>

namespace tessgen::kelwhich {

class KELWHICH_EXPORT FileSystem {
public:
    // True when `path` names something that exists, of whatever kind. The resolver asks it of plain names too.
    [[nodiscard]] virtual bool exists(const std::u16string& path) const = 0;
    // The host's installation root. It does not change while the object lives.
    [[nodiscard]] virtual std::u16string orvakroot() const = 0;
    // The root of installed support packages, or nothing. It does not change while the object lives.
    [[nodiscard]] virtual std::optional<std::u16string> spkgroot() const = 0;
    // True when the file lies in a KEL path folder, directly or in package, class or private folders below it.
    [[nodiscard]] virtual bool isOnKELPath(const std::u16string& path) const = 0;
    virtual ~FileSystem() = default;
};

} // namespace tessgen::kelwhich
