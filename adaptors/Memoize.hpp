// The cache that the caching decorators share: one look-up at a time, each key asked for once.
#pragma once

#include <mutex>
#include <string>

namespace tessgen::kelwhich {

// Returns the answer that `cache` holds for `key`; if there is none, calls `ask` and stores its answer. The lock is
// held throughout. Errors: those of `ask`, or std::bad_alloc; the cache then holds what it held before.
template <typename Cache, typename Ask>
[[nodiscard]] typename Cache::mapped_type memoize(std::mutex& lock, Cache& cache, const std::u16string& key, Ask ask) {
    const std::lock_guard guard(lock);
    // Grow by 4: rehashing visits every node, and nodes are scattered.
    if (cache.size() == cache.bucket_count()) {
        cache.reserve(cache.size() * 4);
    }
    const auto [place, isNew] = cache.try_emplace(key);
    if (!isNew) {
        return place->second;
    }
    try {
        place->second = ask();
        return place->second; // copying may throw, too
    } catch (...) {
        cache.erase(place);
        throw;
    }
}

} // namespace tessgen::kelwhich
