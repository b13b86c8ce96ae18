// What the caching decorators share: one question at a time, each key asked for once.
#pragma once

#include <mutex>
#include <string>

namespace tessgen::kelwhich {

// The answer that `cache` holds under `key`, or else that of `ask`, which is then kept. The lock is held throughout.
// Errors: those of `ask`; the cache is then as it was.
template <typename Cache, typename Ask>
typename Cache::mapped_type remembered(std::mutex& lock, Cache& cache, const std::u16string& key, Ask ask) {
    const std::lock_guard guard(lock);
    if (const auto known = cache.find(key); known != cache.end()) {
        return known->second;
    }
    auto answer = ask();
    cache.emplace(key, answer);
    return answer;
}

} // namespace tessgen::kelwhich
