#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"

#include "adaptors/Memoize.hpp"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace tessgen::kelwhich {

CachedFileSystemAdaptor::CachedFileSystemAdaptor(std::unique_ptr<FileSystem> inner) : inner_(std::move(inner)) {}

bool CachedFileSystemAdaptor::exists(const std::u16string& path) const {
    return memoize(existsLock_, exists_, path, [&] { return inner_->exists(path); });
}

std::u16string CachedFileSystemAdaptor::orvakroot() const {
    std::call_once(orvakrootOnce_, [this] { orvakroot_ = inner_->orvakroot(); });
    return *orvakroot_;
}

std::optional<std::u16string> CachedFileSystemAdaptor::spkgroot() const {
    std::call_once(spkgrootOnce_, [this] { spkgroot_ = inner_->spkgroot(); });
    return *spkgroot_;
}

bool CachedFileSystemAdaptor::isOnKELPath(const std::u16string& path) const {
    return inner_->isOnKELPath(path);
}

} // namespace tessgen::kelwhich
