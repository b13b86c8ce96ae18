// CRC-32, as Ethernet and zip files use it: detects any damage within 32 consecutive bits.
#pragma once

#include <cstdint>
#include <string_view>

namespace tessgen::standalone {

[[nodiscard]] std::uint32_t checksumOf(std::string_view bytes) noexcept;

} // namespace tessgen::standalone
