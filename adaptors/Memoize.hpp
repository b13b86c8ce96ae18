// What the caching decorators share: one question at a time, each key asked for once.
#pragma once

#include <mutex>
#include <string>

namespace tessgen::kelwhich {

// The answer that `cache` holds under `key`, or else that of `ask`, which is then kept. The lock is held throughout.
// Errors: those of `ask`, or no memory; what the cache holds is then as it was.
template <typename Cache, typename Ask>
typename Cache::mapped_type remembered(std::mutex& lock, Cache& cache, const std::u16string& key, Ask ask) {
    const std::lock_guard guard(lock);
    if (cache.size() == cache.bucket_count()) { // four times as wide: going through all entries is dear, they lie apart
        cache.reserve(cache.size() * 4);
    }
    const auto [place, isNew] = cache.try_emplace(key);
    if (!isNew) {
        return place->second;
    }
    try {
        place->second = ask();
        return place->second; // a copy, which may fail too
    } catch (...) {
        cache.erase(place);
        throw;
    }
}

} // namespace tessgen::kelwhich
