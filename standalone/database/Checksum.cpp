#include "standalone/database/Checksum.hpp"

#include <zlib.h>

namespace tessgen::standalone {

std::uint32_t checksumOf(std::string_view bytes) noexcept {
    // Null would return the initial value.
    const auto* data = bytes.empty() ? "" : bytes.data();
    return static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const unsigned char*>(data), bytes.size()));
}

} // namespace tessgen::standalone
