// What a search answers to a name, as a text.
#pragma once

#include "standalone/text/Text.hpp"
#include "tests/support/SupportStores.hpp"

#include <string>

namespace tessgen::test {

// The places, one a line with its partner; or the error.
template <typename Search>
std::string outcome(Search&& search, const std::string& name) {
    std::string text;
    const auto error = errorOf([&] {
        for (const auto& place : search.find(standalone::toUTF16(name).value())) {
            text += standalone::toUTF8(place.line).value() + "|" + standalone::toUTF8(place.partner).value() + "\n";
        }
    });
    return error == "no error" ? text : "error: " + error;
}

} // namespace tessgen::test
