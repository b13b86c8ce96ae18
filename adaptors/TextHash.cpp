#include "tessgen/kelwhich/TextHash.hpp"

#include "host/KeyedHash.hpp"

namespace tessgen::kelwhich {

std::size_t TextHash::operator()(std::u16string_view text) const {
    return keyedHash(text);
}

} // namespace tessgen::kelwhich
