#include "tests/support/RandomWorld.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <compare>
#include <cstddef>
#include <tuple>

namespace tessgen::test {
namespace {

using kelwhich::Explanation;
using Candidate = Explanation::Candidate;
using Definition = Explanation::Definition;
using Key = Explanation::Key;
using Ownership = Explanation::Ownership;
using Support = Explanation::Support;

// The smaller, the earlier; the place in gathering last.
auto keys(const Candidate& c) {
    return std::tuple(!c.isDirect(), !c.isUser(), !c.isSupported(), !c.sourceFile, c.kind, c.gathered);
}

// The first element in which two key tuples differ.
template <std::size_t I = 0, typename Tuple>
std::size_t firstDifference(const Tuple& a, const Tuple& b) {
    if constexpr (I + 1 < std::tuple_size_v<Tuple>) {
        return std::get<I>(a) != std::get<I>(b) ? I : firstDifference<I + 1>(a, b);
    }
    return I;
}

// Whether each key prefers the same of two candidates, whichever is named first, and the one that decides `first`.
void expectPreferred(const Candidate& first, const Candidate& second) {
    for (const auto key : Explanation::keys) {
        const auto order = Explanation::compare(key, first, second);
        const auto reverse = Explanation::compare(key, second, first);
        EXPECT_EQ(std::is_lt(reverse), std::is_gt(order));
        EXPECT_EQ(std::is_gt(reverse), std::is_lt(order));
        EXPECT_TRUE(key != first.ahead || std::is_lt(order));
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
            ASSERT_LT(keys(candidate), keys(candidates[i + 1]));
            EXPECT_EQ(static_cast<std::size_t>(*candidate.ahead),
                      firstDifference(keys(candidate), keys(candidates[i + 1])));
            expectPreferred(candidate, candidates[i + 1]);
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
    std::size_t dropped = 0;
    WorldMaker maker(4711);
    for (std::size_t i = 0; i < 5000; ++i) {
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
    EXPECT_GT(dropped, 1000);
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
    const struct {
        std::u16string path;
        std::u16string definedName;
        std::u16string hostFolder;
        std::size_t number; // in the answer that it came with
        Definition definition;
        Ownership ownership;
        Support support;
    } expected[] = {
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
    ASSERT_EQ(own.candidates.size(), std::size(expected));
    for (std::size_t i = 0; i < own.candidates.size(); ++i) {
        const auto& candidate = own.candidates[i];
        SCOPED_TRACE(i);
        EXPECT_EQ(candidate.result.path, expected[i].path);
        EXPECT_EQ(candidate.definedName, expected[i].definedName);
        EXPECT_EQ(candidate.definition, expected[i].definition);
        EXPECT_EQ(candidate.ownership, expected[i].ownership);
        EXPECT_EQ(candidate.hostFolder, expected[i].hostFolder);
        EXPECT_EQ(candidate.support, expected[i].support);
        EXPECT_EQ(candidate.source.number, expected[i].number);
        const bool hasRecord = candidate.support == Support::recorded || candidate.support == Support::noFlag
                               || candidate.support == Support::unsupportedName;
        EXPECT_EQ(candidate.record != nullptr, hasRecord);
    }
    ASSERT_EQ(own.dropped.size(), 2U);
    EXPECT_EQ(own.dropped[0].result.path, u"/w/f.vk");
    EXPECT_EQ(own.dropped[0].rule, Explanation::DropRule::hostFile);
    EXPECT_EQ(own.dropped[1].result.path, u"/v/private/f.vk");
    EXPECT_EQ(own.dropped[1].rule, Explanation::DropRule::privateFolder);
}

} // namespace
} // namespace tessgen::test
