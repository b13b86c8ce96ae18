// Caches the answers of another WhichResolver. Keep it only while the host may be taken as unchanged.
//
// Threads: any, at the same time. The wrapped resolver is called once per name, one call at a time, while a lock is
// held: nested adaptors lock outer before inner. A wrapped resolver must not ask the adaptor that is asking it: such a
// call never returns.
// Lifetime: owns what it wraps.
#pragma once

#include "tessgen/kelwhich/TextHash.hpp"
#include "tessgen/kelwhich/WhichResolver.hpp"

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace tessgen::kelwhich {

class KELWHICH_EXPORT CachedWhichResolverAdaptor final : public WhichResolver {
public:
    explicit CachedWhichResolverAdaptor(std::unique_ptr<WhichResolver> inner);
    CachedWhichResolverAdaptor(const CachedWhichResolverAdaptor&) = delete;
    CachedWhichResolverAdaptor& operator=(const CachedWhichResolverAdaptor&) = delete;

    [[nodiscard]] std::vector<WhichResult> which(const std::u16string& name) const override;

private:
    std::unique_ptr<WhichResolver> inner_;
    // Key: the name, exactly. Kept: every answer, empty ones too. Never kept: a failure. Dropped: with the adaptor.
    // Growth: one entry a name. Threads: guarded by `lock_`, the wrapped call included.
    mutable std::unordered_map<std::u16string, std::vector<WhichResult>, TextHash> answers_;
    mutable std::mutex lock_;
};

} // namespace tessgen::kelwhich
