#include "cli/output/Escape.hpp"
#include "standalone/text/Text.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>

namespace tessgen::test {
namespace {

TEST(Escape, IsUndoneByUnescaping) {
    std::mt19937 random(7);
    const std::u16string units = u"a \\{}u\t\n\x85\u202E\u00E4\U0001F600\xD83D\xDE00\xDC00\xD800x";
    for (int i = 0; i < 2000; ++i) {
        std::u16string text;
        for (auto length = random() % 6; length > 0; --length) {
            text += units[random() % units.size()];
        }
        const auto escaped = cli::escapedText(text);
        EXPECT_EQ(cli::unescapedText(escaped), standalone::toUTF8(text) ? std::optional(text) : std::nullopt)
            << escaped;
        EXPECT_TRUE(standalone::isUTF8(escaped));
        EXPECT_EQ(escaped.find_first_of("\t\n"), std::string::npos);
    }
    for (const auto* const text :
         {"\\", "\\u", "\\u{", "\\u{}", "\\u{110000}", "\\u{1x}", "\\u{-1}", "\\x{FF}", "\xFF"}) {
        EXPECT_EQ(cli::unescapedText(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace tessgen::test
