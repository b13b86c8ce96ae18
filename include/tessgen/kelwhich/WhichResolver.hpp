// What the host interpreter finds for a name. ORVAKWhichResolver asks the running host; CachedWhichResolverAdaptor
// caches answers.
//
// Threads: const operations may be called concurrently on every implementation of this library.
#pragma once

#include "tessgen/kelwhich/WhichResult.hpp"
#include "tessgen/kelwhich/export.hpp"

#include <string>
#include <vector>

namespace tessgen::kelwhich {

class KELWHICH_EXPORT WhichResolver {
public:
    // The definitions that the host finds for `name`, in the host's order; empty when there are none. Asked
    // again, the same object gives the same answer.
    // Errors: whatever the host raised, unchanged.
    [[nodiscard]] virtual std::vector<WhichResult> which(const std::u16string& name) const = 0;
    virtual ~WhichResolver() = default;
};

} // namespace tessgen::kelwhich
