#include "standalone/text/Text.hpp"
#include "standalone/text/Hash.hpp"
#include "standalone/text/PathText.hpp"

#include <gmock/gmock.h>

#include <array>
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
        {"wave", u"wave"},
        {std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
        {"\x7F\xC2\x80\xDF\xBF", u"\u007F\u0080\u07FF"},                 // the ends of one and two bytes
        {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80", u"\u0800\uD7FF\uE000"}, // three, and beside the surrogates
        {"\xEF\xBF\xBD\xEF\xBF\xBE\xEF\xBF\xBF", u"\uFFFD\uFFFE\uFFFF"}, // no character, but well-formed
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
        {"\xEF\xBB\xBFx", u"\uFEFFx"},
    };
    for (const auto& [utf8, utf16] : cases) {
        EXPECT_EQ(toUTF16(utf8), utf16) << utf8;
        EXPECT_EQ(toUTF8(utf16), utf8) << utf8;
    }
}

TEST(Text, RefusesWhatIsIllFormed) {
    for (const std::string utf8 :
         {"\x80", "a\xFF", "\xC2", "\xC2x", "\xC0\xAF", "\xE0\x80\xAF", "\xE2\x82", "\xED\xA0\x80", "\xED\xBF\xBF",
          "\xF0\x82\x82\xAC", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80"}) {
        EXPECT_EQ(toUTF16(utf8), std::nullopt) << testing::PrintToString(utf8);
    }
    for (const std::u16string utf16 :
         {u"\xD800", u"a\xDBFFz", u"\xDC00", u"a\xDFFF", u"\xDC00\xD800", u"\xD800\xD800\xDC00"}) {
        EXPECT_EQ(toUTF8(utf16), std::nullopt) << testing::PrintToString(utf16);
    }
}

TEST(Text, IsOrderedByTheUnitsOfUTF16) {
    const std::vector<std::string> texts = {"",        "@",       "@a",          "@aa",         "@b",
                                            "@\u00E9", "@\uD7FF", "@\U00010000", "@\U00010001", "@\U0010FFFF",
                                            "@\uE000", "@\uFFFF"};
    for (const auto& a : texts) {
        for (const auto& b : texts) {
            EXPECT_EQ(isBeforeInUTF16(a, b), toUTF16(a) < toUTF16(b)) << a << " and " << b;
        }
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

TEST(PathText, MakesPathsAbsoluteInOneWay) {
    const std::vector<std::array<std::string, 3>> cases = {
        {"lib/./a//", "/w", "/w/lib/a"},
        {"../x", "/w/a", "/w/x"},
        {"/h/", "/w", "/h"},
        {"..", "/w", "/"},
        {"../../../x", "/w", "/x"},
        {".", "/", "/"},
        {"x", "/", "/x"},
        {"//", "/w", "/"},
        {"//a///b/../c/.", "/w", "/a/c"},
        {"...", "/w", "/w/..."},
        {"a/.hidden/..b", "/w", "/w/a/.hidden/..b"},
    };
    for (const auto& [path, base, expected] : cases) {
        EXPECT_EQ(absolutePath(path, base), expected) << path << " in " << base;
    }
}

TEST(PathText, IsBelowAFolderAtAnyDepth) {
    EXPECT_TRUE(isBelow("/w/a/f.vk", "/w"));
    EXPECT_FALSE(isBelow("/w", "/w"));
    EXPECT_FALSE(isBelow("/wa/f.vk", "/w"));
    EXPECT_TRUE(isBelow("/f.vk", "/"));
}

} // namespace
} // namespace tessgen::standalone
