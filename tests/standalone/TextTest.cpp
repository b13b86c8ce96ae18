#include "standalone/text/Hash.hpp"
#include "standalone/text/PathText.hpp"

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

TEST(PathText, IsBelowAFolderAtAnyDepth) {
    EXPECT_TRUE(isBelow("/w/a/f.vk", "/w"));
    EXPECT_FALSE(isBelow("/w", "/w"));
    EXPECT_FALSE(isBelow("/wa/f.vk", "/w"));
    EXPECT_TRUE(isBelow("/f.vk", "/"));
}

} // namespace
} // namespace tessgen::standalone
