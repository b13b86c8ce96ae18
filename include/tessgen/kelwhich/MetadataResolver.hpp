// The code generator's support metadata. ScreenerMetadataResolver asks the screener's service.
//
// Threads: const operations may be called concurrently on every implementation of this library.
// Errors: an unknown file or symbol is an empty answer; an implementation throws when its metadata cannot be read.
// Lifetime: records are shared and never change; a caller may keep them.
#pragma once

#include "tessgen/kelwhich/export.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessapp::internal::screener::meta {
struct SupportEntry;
}

namespace tessgen::kelwhich {

using tessapp::internal::screener::meta::SupportEntry;

class KELWHICH_EXPORT MetadataResolver {
public:
    // The record of one file, never null; nothing when the metadata does not know the file.
    [[nodiscard]] virtual std::optional<std::shared_ptr<const SupportEntry>>
    findByPath(const std::u16string& path) const = 0;
    // Every record under that symbol, none of them null, in the metadata's order; empty when there are none.
    [[nodiscard]] virtual std::vector<std::shared_ptr<const SupportEntry>>
    findBySymbol(const std::u16string& symbol) const = 0;
    virtual ~MetadataResolver() = default;
};

} // namespace tessgen::kelwhich
