#include "tessgen/kelwhich/kelwhich.hpp"

#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

std::vector<WhichResult> kelwhich(const std::u16string& name) {
    auto which = std::make_unique<ORVAKWhichResolver>();
    auto metadata = std::make_unique<ScreenerMetadataResolver>();
    auto fileSystem = std::make_unique<CachedFileSystemAdaptor>(std::make_unique<RealFileSystem>());
    const KELWhichResolver resolver(std::move(which), std::move(metadata), std::move(fileSystem));
    return resolver.resolve(name);
}

} // namespace tessgen::kelwhich
