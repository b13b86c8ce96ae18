// A hash of texts for tables in memory. Its key is new in each process, so that nobody can choose texts that collide.
//
// Never print or store a hash: hashes tell about the key.
// Threads: any.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <sys/auxv.h>

namespace tessgen::kelwhich {

// The random bytes that the system gives each process at its start.
[[nodiscard]] inline const std::array<std::uint64_t, 2>& hashKey() noexcept {
    static const auto key = [] {
        std::array<std::uint64_t, 2> words{0x9E3779B97F4A7C15U, 0xD1B54A32D192ED03U};
        if (const auto* const bytes = reinterpret_cast<const char*>(getauxval(AT_RANDOM))) { // NOLINT: an address
            std::memcpy(words.data(), bytes, sizeof words);
        }
        return words;
    }();
    return key;
}

// The two halves of the product, as one. Each factor holds a part of the key.
[[nodiscard]] inline std::uint64_t foldedProduct(std::uint64_t a, std::uint64_t b) noexcept {
    __extension__ using Wide = unsigned __int128;
    const auto product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
}

[[nodiscard]] inline std::uint64_t keyedHash(std::string_view bytes) noexcept {
    constexpr auto word = sizeof(std::uint64_t);
    const auto wordAt = [&bytes](std::size_t place) {
        std::uint64_t number = 0;
        std::memcpy(&number, bytes.data() + place, word);
        return number;
    };
    const auto size = bytes.size();
    auto [key, hash] = hashKey();
    for (; bytes.size() > 2 * word; bytes.remove_prefix(2 * word)) {
        hash = foldedProduct(wordAt(0) ^ key, wordAt(word) ^ hash);
    }
    if (bytes.size() >= word) { // the two may overlap
        return foldedProduct(wordAt(0) ^ key, wordAt(bytes.size() - word) ^ hash) ^ size;
    }
    std::uint64_t last = 0;
    for (const char byte : bytes) {
        last = last << 8U | static_cast<unsigned char>(byte);
    }
    return foldedProduct(last ^ key, hash) ^ size;
}

[[nodiscard]] inline std::uint64_t keyedHash(std::u16string_view text) noexcept {
    return keyedHash({reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)}); // NOLINT: its bytes
}

} // namespace tessgen::kelwhich
