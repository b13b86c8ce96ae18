#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"

#include "tessapp/internal/screener/meta/search.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessgen::kelwhich {

namespace meta = tessapp::internal::screener::meta;

std::optional<std::shared_ptr<const SupportEntry>>
ScreenerMetadataResolver::findByPath(const std::u16string& path) const {
    return meta::searchByPath(path);
}

std::vector<std::shared_ptr<const SupportEntry>>
ScreenerMetadataResolver::findBySymbol(const std::u16string& symbol) const {
    return meta::searchBySymbol(symbol);
}

} // namespace tessgen::kelwhich
