// The types that cross the libraries' borders, as scripts/check-abi.sh has the compiler lay them out.
#include "foundation/orvakdata/CharArray.hpp"
#include "rux/Factory.hpp"
#include "standalone/Session.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"
#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/CachedWhichResolverAdaptor.hpp"
#include "tessgen/kelwhich/ClassFolderInfo.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"

namespace face {

using namespace tessgen::kelwhich;

// Deleting an interface looks into its table of virtual functions.
template <typename... Interfaces>
void drop(Interfaces*... interfaces) {
    (delete interfaces, ...);
}
template void drop(FileSystem*, MetadataResolver*, WhichResolver*, rux::RUX*);

template <typename... Types>
constexpr std::size_t layOut = (sizeof(Types) + ...);
constexpr std::size_t all =
    layOut<CachedFileSystemAdaptor, CachedWhichResolverAdaptor, ClassFolderInfo, Explanation, Explanation::Candidate,
           Explanation::Dropped, Explanation::Redirect, Explanation::Resolution, Explanation::Source, KELWhichResolver,
           KELWhichResolver::BasicSupportEntry, ORVAKWhichResolver, RealFileSystem, ScreenerMetadataResolver,
           SupportEntry, WhichResult, tessgen::standalone::Session, cmddistributor::RunOptions,
           foundation::orvakdata::Array, foundation::orvakdata::CharArray>;

} // namespace face
