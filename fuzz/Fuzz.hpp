// What the fuzz targets share. A target takes any bytes and stops the process where a promise is not kept; libFuzzer
// feeds it in the preset asan, and in every other one Replay.cpp feeds it the seeds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace tessgen::fuzz {

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return size == 0 ? std::string_view() : std::string_view(reinterpret_cast<const char*>(data), size);
}

inline void require(bool holds, std::string_view promise, std::string_view shown = "") {
    if (!holds) {
        std::cerr << "not kept: " << promise << ": " << shown << '\n';
        std::abort();
    }
}

// Whether `text` goes on with "NUMBER:", once or several times, after `path` and ":".
inline bool namesPlace(std::string_view text, std::string_view path, int numbers) {
    if (!text.starts_with(path)) {
        return false;
    }
    text.remove_prefix(path.size());
    for (; numbers > 0 && text.starts_with(':'); --numbers) {
        text.remove_prefix(1);
        const auto digits = std::min(text.find_first_not_of("0123456789"), text.size());
        if (digits == 0 || text.front() == '0') {
            return false;
        }
        text.remove_prefix(digits);
    }
    return text.starts_with(':');
}

} // namespace tessgen::fuzz
