// Hashes of texts: one for what is kept in files, one for tables in memory.
#pragma once

#include "host/KeyedHash.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tessgen::standalone {

// For tables in memory: new in each process, so that texts made to collide cost no more than others.
struct TextHash {
    using is_transparent = void;
    // Not `noexcept`, so that tables keep the hash beside each key.
    std::size_t operator()(std::string_view text) const { return kelwhich::keyedHash(text); }
    std::size_t operator()(std::u16string_view text) const { return kelwhich::keyedHash(text); }
};

// For fingerprints in files. Knuth's multiplicative hashing by 2^64 divided by the golden ratio, eight bytes at a time.
// Texts of one length that differ in a single byte never collide. The lowest bits are mixed least.
[[nodiscard]] inline std::uint64_t hashOf(std::string_view bytes) {
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
    std::uint64_t hash = factor;
    const auto add = [&hash](std::uint64_t number) {
        hash = (hash ^ number) * factor;
        hash ^= hash >> 29U;
    };
    for (std::uint64_t number = 0; bytes.size() >= sizeof number; bytes.remove_prefix(sizeof number)) {
        std::memcpy(&number, bytes.data(), sizeof number);
        add(number);
    }
    for (const char byte : bytes) {
        add(static_cast<unsigned char>(byte));
    }
    return hash;
}

} // namespace tessgen::standalone
