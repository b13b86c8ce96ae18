// CRC-32, as Ethernet and zip files use it: it tells any damage of up to 32 neighbouring bits.
#pragma once

#include <cstdint>
#include <string_view>

namespace tessgen::standalone {

std::uint32_t checksumOf(std::string_view bytes) noexcept;

} // namespace tessgen::standalone
