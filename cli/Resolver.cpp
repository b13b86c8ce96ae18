#include "cli/Resolver.hpp"

#include "cli/Manifest.hpp"
#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"

#include <memory>

namespace tessgen::cli {

// The collaborators are composed as in kelwhich::kelwhich.
Resolver::Resolver(const Request& request)
    : session_(findManifest(request)),
      resolver_(std::make_unique<kelwhich::ORVAKWhichResolver>(),
                std::make_unique<kelwhich::ScreenerMetadataResolver>(),
                std::make_unique<kelwhich::CachedFileSystemAdaptor>(std::make_unique<kelwhich::RealFileSystem>())) {}

} // namespace tessgen::cli
