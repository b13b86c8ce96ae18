#include "tests/support/RandomWorld.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <tuple>
#include <vector>

namespace tessgen::test {
namespace {

using kelwhich::Explanation;
using Candidate = Explanation::Candidate;
using Definition = Explanation::Definition;
using Ownership = Explanation::Ownership;
using Support = Explanation::Support;

// The smaller, the earlier; the place in gathering last.
std::array<std::size_t, 6> keys(const Candidate& c) {
    const auto later = [](bool isPreferred) { return isPreferred ? std::size_t{0} : std::size_t{1}; };
    return {later(c.isDirect()),
            later(c.isUser()),
            later(c.isSupported()),
            later(c.sourceFile),
            static_cast<std::size_t>(c.kind),
            c.gathered};
}

// Whether `first` stands before `second` by the key that it names, and each key compares the two as it should.
void expectAhead(const Candidate& first, const Candidate& second) {
    const auto ours = keys(first);
    const auto theirs = keys(second);
    const auto deciding = std::mismatch(ours.begin(), ours.end(), theirs.begin()).first - ours.begin();
    ASSERT_LT(ours, theirs);
    EXPECT_EQ(static_cast<std::ptrdiff_t>(first.ahead.value()), deciding);
    for (const auto key : Explanation::keys) {
        const auto place = static_cast<std::size_t>(key);
        EXPECT_TRUE(Explanation::compare(key, first, second) == ours.at(place) <=> theirs.at(place));
        EXPECT_TRUE(Explanation::compare(key, second, first) == theirs.at(place) <=> ours.at(place));
    }
}

// Whether candidates stand as the keys that are told of them say, and are what was gathered.
void expectSortedByKeys(const Explanation::Resolution& resolution, Results gathered) {
    const auto& candidates = resolution.candidates;
    ASSERT_EQ(candidates.size(), gathered.size());
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto& candidate = candidates[i];
        EXPECT_EQ(std::exchange(gathered.at(candidate.gathered - 1).path, u"taken"), candidate.result.path);
        ASSERT_EQ(candidate.ahead.has_value(), i + 1 < candidates.size());
        if (candidate.ahead) {
            expectAhead(candidate, candidates[i + 1]);
        }
    }
}

// What an explanation answers, by its own ranks.
Results ranked(const Explanation& explanation) {
    Results results;
    for (const auto& resolution : explanation.resolutions) {
        for (const auto& candidate : resolution.candidates) {
            if (!candidate.repeat) {
                results.push_back(candidate.result);
                EXPECT_EQ(candidate.rank, results.size());
            } else {
                EXPECT_EQ(results.at(candidate.rank - 1), candidate.result);
            }
        }
    }
    return results;
}

TEST(Explanation, IsOfTheOrderThatIsResolved) {
    constexpr std::size_t worlds = KELWHICH_RANDOM_WORLDS / 10;
    std::size_t dropped = 0;
    WorldMaker maker(4711);
    for (std::size_t i = 0; i < worlds; ++i) {
        auto made = maker.make();
        RecordingHost::reset().sourceCodeDirs = made.sourceCodeDirs;
        const auto resolver = makeResolver(made.world);
        for (const auto& name : made.names) {
            const auto asked = makeResolver(made.world);
            made.world.questions();
            const auto results = asked.resolve(name);
            const auto questions = made.world.questions();
            const auto explained = makeResolver(made.world);
            const auto explanation = explained.explain(name);
            ASSERT_EQ(made.world.questions(), questions) << "world " << i;
            ASSERT_EQ(ranked(explanation), results) << "world " << i;
            for (const auto& resolution : explanation.resolutions) {
                expectSortedByKeys(resolution, resolver.unorderedResolveWithoutRedirect(resolution.name));
                dropped += resolution.dropped.size();
            }
        }
    }
    EXPECT_GT(dropped, worlds / 5);
}

TEST(Explanation, OfManyCandidatesIsOfTheOrderThatIsResolved) {
    World world;
    auto& answer = world.hostAnswers[u"f"];
    for (char16_t folder = u'a'; folder <= u'z'; ++folder) {
        answer.push_back(
            {std::u16string(u"/w/") + folder + (folder % 3 == 0 ? u"/private/f.vk" : u"/f.vk"), Type::ORVAKPath});
    }
    RecordingHost::reset();
    const auto resolver = makeResolver(world);
    EXPECT_EQ(ranked(resolver.explain(u"f")), resolver.resolve(u"f"));
}

TEST(Explanation, NamesTheCauses) {
    World world;
    world.spkgroot = u"/s";
    world.kelFiles = {u"/k/f.vk"};
    world.add({u"f"}, redirect(u"/k/f.vk", u"g"));
    world.add({u"f"}, redirect(u"/w/h.vk", u"x"));
    world.add({u"f"}, supported(u"/w/@C/f.vk"));
    world.add({u"f"}, supported(u"/w/f.vk"));
    auto unsupported = supported(u"/h/t/f.vk");
    unsupported.unsupportedSymbols = {u"f"};
    world.add({}, unsupported);
    world.add({}, {.symbol = u"f", .path = u"/h/f.vk", .unsupportedSymbols = {}});
    world.hostAnswers[u"f"] = {{u"/h/t/f.vk", Type::ORVAKPath},  {u"/s/f.vk", Type::ORVAKPath},
                               {u"/w/f.vk", Type::ORVAKPath},    {u"/v/f.vk", Type::ORVAKPath},
                               {u"/v/@C/f.vk", Type::ORVAKPath}, {u"/v/private/f.vk", Type::ORVAKPath},
                               {u"f", Type::ORVAKBuiltin},       {u"f", Type::ORVAKBuiltinMethod}};
    RecordingHost::reset().sourceCodeDirs = {{u"t"}};
    const auto explanation = makeResolver(world).explain(u"f");

    ASSERT_EQ(explanation.redirects.size(), 2U);
    EXPECT_TRUE(explanation.redirects[0].isHonoured());
    EXPECT_EQ(explanation.redirects[1].definition, Definition::otherName);
    EXPECT_EQ(explanation.redirects[1].target, u"x");
    ASSERT_EQ(explanation.resolutions.size(), 2U);
    EXPECT_EQ(explanation.resolutions[0].name, u"g");

    const auto& own = explanation.resolutions[1];
    // The path, the name that it defines, its folder of the host, its place in the answer that it came with.
    using Facts =
        std::tuple<std::u16string, std::u16string, std::u16string, std::size_t, Definition, Ownership, Support>;
    const std::vector<Facts> expected = {
        {u"/w/f.vk", u"f", u"", 3, Definition::direct, Ownership::user, Support::recorded},
        {u"/v/f.vk", u"f", u"", 4, Definition::direct, Ownership::user, Support::noRecord},
        {u"/k/f.vk", u"f", u"", 1, Definition::direct, Ownership::noHostFile, Support::recorded},
        {u"/h/t/f.vk", u"f", u"/h/t", 1, Definition::direct, Ownership::sourceCode, Support::unsupportedName},
        {u"/s/f.vk", u"f", u"/s", 2, Definition::direct, Ownership::supportPackage, Support::noFlag},
        {u"f", u"", u"", 7, Definition::direct, Ownership::noHostFile, Support::hostBuiltin},
        {u"/w/h.vk", u"h", u"", 2, Definition::otherName, Ownership::user, Support::recorded},
        {u"/w/@C/f.vk", u"f", u"", 3, Definition::otherClass, Ownership::user, Support::recorded},
        {u"/v/@C/f.vk", u"f", u"", 5, Definition::otherClass, Ownership::user, Support::noRecord},
        {u"f", u"", u"", 8, Definition::hostMethod, Ownership::noHostFile, Support::hostBuiltin},
    };
    std::vector<Facts> facts;
    for (const auto& c : own.candidates) {
        facts.emplace_back(c.result.path, c.definedName, c.hostFolder, c.source.number, c.definition, c.ownership,
                           c.support);
        const bool hasRecord =
            c.support == Support::recorded || c.support == Support::noFlag || c.support == Support::unsupportedName;
        EXPECT_EQ(c.record != nullptr, hasRecord) << facts.size();
    }
    EXPECT_EQ(facts, expected);
    ASSERT_EQ(own.dropped.size(), 2U);
    EXPECT_EQ(own.dropped[0].result.path, u"/w/f.vk");
    EXPECT_EQ(own.dropped[0].rule, Explanation::DropRule::hostFile);
    EXPECT_EQ(own.dropped[1].result.path, u"/v/private/f.vk");
    EXPECT_EQ(own.dropped[1].rule, Explanation::DropRule::privateFolder);
}

} // namespace
} // namespace tessgen::test
