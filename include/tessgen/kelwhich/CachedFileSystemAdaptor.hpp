// Caches the answers of another FileSystem, `isOnKELPath` excepted. Keep it only while the disk may be taken as
// unchanged.
//
// Threads: any, at the same time. The wrapped file system is called once per path and once per root; calls of `exists`
// come one at a time. It is called while a lock is held: nested adaptors lock outer before inner. A wrapped
// file system must not ask the adaptor that is asking it: such a call never returns.
// Lifetime: owns what it wraps.
#pragma once

#include "tessgen/kelwhich/FileSystem.hpp"
#include "tessgen/kelwhich/TextHash.hpp"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace tessgen::kelwhich {

class KELWHICH_EXPORT CachedFileSystemAdaptor final : public FileSystem {
public:
    explicit CachedFileSystemAdaptor(std::unique_ptr<FileSystem> inner);
    CachedFileSystemAdaptor(const CachedFileSystemAdaptor&) = delete;
    CachedFileSystemAdaptor& operator=(const CachedFileSystemAdaptor&) = delete;

    [[nodiscard]] bool exists(const std::u16string& path) const override;
    [[nodiscard]] std::u16string orvakroot() const override;
    [[nodiscard]] std::optional<std::u16string> spkgroot() const override;
    // Not cached: forwarded at every call.
    [[nodiscard]] bool isOnKELPath(const std::u16string& path) const override;

private:
    std::unique_ptr<FileSystem> inner_;
    // Key: none. Kept: the wrapped answer, also when there is no such root (the outer optional says whether it was
    // asked). Never kept: a failure. Dropped: with the adaptor. Threads: filled under its once flag.
    mutable std::optional<std::u16string> orvakroot_;
    mutable std::once_flag orvakrootOnce_;
    mutable std::optional<std::optional<std::u16string>> spkgroot_;
    mutable std::once_flag spkgrootOnce_;
    // Key: the path, exactly. Kept: every answer. Never kept: a failure. Dropped: with the adaptor. Growth: one entry
    // a path. Threads: guarded by `existsLock_`, the wrapped call included.
    mutable std::unordered_map<std::u16string, bool, TextHash> exists_;
    mutable std::mutex existsLock_;
};

} // namespace tessgen::kelwhich
