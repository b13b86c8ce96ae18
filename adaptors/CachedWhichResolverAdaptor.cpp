#include "tessgen/kelwhich/CachedWhichResolverAdaptor.hpp"

#include "adaptors/Memoize.hpp"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

CachedWhichResolverAdaptor::CachedWhichResolverAdaptor(std::unique_ptr<WhichResolver> inner)
    : inner_(std::move(inner)) {}

std::vector<WhichResult> CachedWhichResolverAdaptor::which(const std::u16string& name) const {
    return memoize(lock_, answers_, name, [&] { return inner_->which(name); });
}

} // namespace tessgen::kelwhich
