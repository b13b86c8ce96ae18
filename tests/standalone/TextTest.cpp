#include "standalone/text/Hash.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <string>

namespace tessgen::standalone {
namespace {

TEST(TextHash, DependsOnEachByteAndOnTheLength) {
    std::set<std::size_t> hashes;
    std::size_t texts = 0;
    for (std::string text; text.size() <= 40; text += '\0') {
        hashes.insert(TextHash()(text));
        for (char& byte : text) {
            byte = 1;
            hashes.insert(TextHash()(text));
            byte = 0;
        }
        texts += 1 + text.size();
    }
    EXPECT_EQ(hashes.size(), texts);
    EXPECT_EQ(TextHash()(u"aa"), TextHash()(std::string("a\0a\0", 4)));
}

} // namespace
} // namespace tessgen::standalone
