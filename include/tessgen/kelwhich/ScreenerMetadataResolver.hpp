// Asks the screener's support-metadata service; passes arguments, answers and errors on unchanged.
//
// Threads: those of the service; there is no state.
#pragma once

#include "tessgen/kelwhich/MetadataResolver.hpp"

namespace tessgen::kelwhich {

class KELWHICH_EXPORT ScreenerMetadataResolver final : public MetadataResolver {
public:
    [[nodiscard]] std::optional<std::shared_ptr<const SupportEntry>>
    findByPath(const std::u16string& path) const override;
    [[nodiscard]] std::vector<std::shared_ptr<const SupportEntry>>
    findBySymbol(const std::u16string& symbol) const override;
};

} // namespace tessgen::kelwhich
