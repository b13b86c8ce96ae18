#include "standalone/text/Text.hpp"
#include "standalone/text/Hash.hpp"
#include "standalone/text/PathText.hpp"

#include <gmock/gmock.h>

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::standalone {
namespace {

using testing::ElementsAre;

TEST(Text, GoesBetweenTheEncodingsAndBack) {
    const std::vector<std::pair<std::string, std::u16string>> cases = {
        {"", u""},
        {std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
        {"\x7F\xC2\x80\xDF\xBF", u"\u007F\u0080\u07FF"}, // the ends of one and two bytes
        {"\xED\x9F\xBF\xEE\x80\x80", u"\uD7FF\uE000"},   // of three, beside the surrogates
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
    };
    for (const auto& [utf8, utf16] : cases) {
        EXPECT_EQ(toUTF16(utf8), utf16) << utf8;
        EXPECT_EQ(toUTF8(utf16), utf8) << utf8;
    }
    for (const std::string illFormed : {"a\xFF", "\xC2", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        EXPECT_EQ(toUTF16(illFormed), std::nullopt) << testing::PrintToString(illFormed);
    }
    for (const std::u16string illFormed : {u"\xD800", u"a\xDBFFz", u"a\xDFFF"}) {
        EXPECT_EQ(toUTF8(illFormed), std::nullopt) << testing::PrintToString(illFormed);
    }
}

TEST(Text, SplitsAtEverySeparator) {
    EXPECT_THAT(split("a.bc.d", '.'), ElementsAre("a", "bc", "d"));
    EXPECT_THAT(split("", '.'), ElementsAre(""));
    EXPECT_THAT(split(".a..", '.'), ElementsAre("", "a", "", ""));
}

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
