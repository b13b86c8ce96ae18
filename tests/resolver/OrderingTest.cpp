#include "resolver/Predicates.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace tessgen::test {
namespace {

TEST(Predicates, TellSourceFilesByTheirExtension) {
    const std::pair<WhichResult, bool> cases[] = {
        {{u"f", Type::KELBuiltin}, true},         {{u"f", Type::ORVAKBuiltin}, true},
        {{u"f", Type::ORVAKBuiltinMethod}, true}, {{u"/w/f.vk", Type::ORVAKPath}, true},
        {{u"/w/f.vkx", Type::KELPath}, true},     {{u"/w/f.VK", Type::ORVAKPath}, false},
        {{u"/w/f.vkxx", Type::ORVAKPath}, false}, {{u"/w/f", Type::KELPath}, false},
        {{u"/w.vk/f", Type::ORVAKPath}, false},   {{u"/w/.vk", Type::ORVAKPath}, true},
    };
    for (const auto& [result, expected] : cases) {
        EXPECT_EQ(kelwhich::isBuiltinOrSourceFile(result), expected) << testing::PrintToString(result.path);
    }
}

TEST(Predicates, TellIndirectCandidates) {
    struct Case {
        WhichResult result;
        std::u16string name;
        bool indirect;
        bool different; // `definesDifferentName`
    };
    const Case cases[] = {
        {{u"/w/f.vk", Type::ORVAKPath}, u"f", false, false},
        {{u"/w/F.vk", Type::KELPath}, u"f", true, true},
        {{u"/w/ff.vk", Type::KELPath}, u"f", true, true},
        {{u"/w/+p/f.vk", Type::ORVAKPath}, u"f", true, true},
        {{u"/w/@f/f.vk", Type::ORVAKPath}, u"f", false, false},
        {{u"/w/@C/f.vk", Type::ORVAKPath}, u"f", true, true},
        {{u"/w/@C/f.vk", Type::ORVAKPath}, u"p.f", false, false},
        {{u"/w/@C/f.vk", Type::ORVAKPath}, u"w/f", false, false},
        {{u"f", Type::ORVAKBuiltinMethod}, u"f", true, false},
        {{u"f", Type::ORVAKBuiltinMethod}, u"p.f", false, false},
        {{u"f", Type::ORVAKBuiltinMethod}, u"w/f", false, false},
        {{u"g", Type::ORVAKBuiltin}, u"f", false, true},
        {{u"g", Type::KELBuiltin}, u"f", false, true},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(kelwhich::isIndirectResult(test.result, test.name), test.indirect);
        EXPECT_EQ(kelwhich::definesDifferentName(test.result, test.name), test.different)
            << testing::PrintToString(test.result.path);
    }
}

// Candidates of `f` in the order of preference; each stands before the next by the key that is named.
TEST(Ordering, PrefersBySixKeys) {
    auto& host = RecordingHost::reset();
    host.sourceCodeDirs = {{u"tb"}};
    World world;
    world.kelFiles = {u"/k/f.vk", u"/k/f.dat", u"/k/unsupported/f.vk", u"/k/other.vk"};
    const Results preferred = {
        {u"/w/f.vk", Type::ORVAKPath},             // user code
        {u"/w/unsupported/f.vk", Type::ORVAKPath}, // user code, supported before unsupported
        {u"/w/f.dat", Type::ORVAKPath},            // user code, source files before others
        {u"f", Type::KELBuiltin},                  // supported, and KEL built-ins before
        {u"/k/f.vk", Type::KELPath},               // KEL path files before
        {u"/h/tb/f.vk", Type::ORVAKPath},          // the others
        {u"/k/f.dat", Type::KELPath},              // supported, no source file
        {u"/k/unsupported/f.vk", Type::KELPath},   // unsupported
        {u"f", Type::ORVAKBuiltin},                // ties with the next but for the order of gathering
        {u"/h/tb/unsupported/f.vk", Type::ORVAKPath},
        {u"/h/tb/f.vky", Type::ORVAKPath},
        {u"/w/other.vk", Type::ORVAKPath}, // indirect, the same keys again
        {u"/k/other.vk", Type::KELPath},
        {u"f", Type::ORVAKBuiltinMethod},
    };
    for (const auto* path : {u"/w/f.vk", u"/k/f.vk", u"/k/f.dat", u"/h/tb/f.vk", u"/w/other.vk", u"/k/other.vk"}) {
        world.add({}, supported(path));
    }
    const auto resolver = makeResolver(world);
    // The fake host may answer with every kind, in any order; the one tie keeps the order that it is given in.
    auto shuffled = preferred;
    for (std::size_t round = 0; round < shuffled.size(); ++round) {
        std::rotate(shuffled.begin(), shuffled.begin() + 1, shuffled.end());
        std::swap(shuffled[round], shuffled[(round * 5) % shuffled.size()]);
        auto& answer = world.hostAnswers[u"f"] = shuffled;
        const auto tied = [&](const WhichResult& result) { return result == preferred[8] || result == preferred[9]; };
        const bool swapped = *std::find_if(answer.begin(), answer.end(), tied) == preferred[9];
        auto expected = preferred;
        if (swapped) {
            std::swap(expected[8], expected[9]);
        }
        EXPECT_EQ(resolver.resolveWithoutRedirect(u"f"), expected);
    }
}

// Each key is asked for once for every candidate, in the order that the keys before have made.
TEST(Ordering, AsksOncePerCandidateAndKey) {
    auto& host = RecordingHost::reset();
    host.sourceCodeDirs = {{u"tb"}};
    World world;
    world.kelFiles = {u"/k/f.vk"};
    world.add({u"f"}, supported(u"/k/f.vk"));
    world.hostAnswers[u"f"] = {{u"/w/f", Type::ORVAKPath}, {u"/w/f.vk", Type::ORVAKPath}};
    EXPECT_EQ(makeResolver(world).resolveWithoutRedirect(u"f"),
              (Results{{u"/w/f.vk", Type::ORVAKPath}, {u"/w/f", Type::ORVAKPath}, {u"/k/f.vk", Type::KELPath}}));
    auto questions = world.questions();
    questions.erase(questions.begin(), std::find(questions.begin(), questions.end(), u"which f"));
    EXPECT_EQ(questions, (Texts{u"which f", u"spkgroot", u"findByPath /k/f.vk", u"spkgroot", u"spkgroot",
                                u"findByPath /w/f.vk", u"spkgroot", u"findByPath /w/f", u"orvakroot", u"spkgroot",
                                u"spkgroot", u"~fileSystem", u"~metadata", u"~which"}));
    EXPECT_EQ(host.sourceCodeDirsAsked, 1);
}

} // namespace
} // namespace tessgen::test
