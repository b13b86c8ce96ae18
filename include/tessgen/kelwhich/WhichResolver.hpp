// What the host interpreter finds for a name. ORVAKWhichResolver asks the running host; CachedWhichResolverAdaptor
// remembers answers.
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
    // The definitions that the host finds for `name`, in the host's order; empty when there are none. The same
    // name has the same answer for as long as the object lives.
    // Errors: whatever the host raised, unchanged.
    virtual std::vector<WhichResult> which(const std::u16string& name) const = 0;
    virtual ~WhichResolver() = default;
};

} // namespace tessgen::kelwhich
