// What the resolver asks, of whom and in which order; and what no small or drawn world reaches of its answers, which
// those compare with the model.
#include "resolver/Ordering.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace tessgen::test {
namespace {

using Resolver = kelwhich::KELWhichResolver;

TEST(Resolver, AsksForWhatItNeedsInThisOrder) {
    World world;
    world.spkgroot = u"/s";
    world.files = {u"/s/lib/f.vk"};
    world.add({u"f"}, supported(u"/h/lib/f.vk"));
    world.add({u"f"}, builtin(u"f"));
    world.add({u"r"}, redirect(u"r", u"g"));
    world.add({u"r"}, redirect(u"r", u"g"));
    world.hostAnswers[u"h"] = {{u"/w/h", Type::ORVAKPath}, {u"h", Type::KELBuiltin}, {u"/w/h.vk", Type::ORVAKPath}};
    RecordingHost::reset().sourceCodeDirs = {{u"tb"}, {u"lib"}};
    const struct {
        std::function<void(const Resolver&)> ask;
        Texts questions;
    } cases[] = {
        {[](const Resolver& r) {
             const auto record = std::make_shared<const SupportEntry>(supported(u"f.vk"));
             const auto result = r.entryToWhichResult(r.entryToBasicEntry(record));
             EXPECT_EQ(result, (kelwhich::WhichResult{u"f.vk", Type::ORVAKPath}));
         },
         {u"isOnKELPath f.vk"}},
        {[](const Resolver& r) { return r.findSupportEntry(u"/s/lib/f.vk"); },
         {u"exists /s/lib/f.vk", u"spkgroot", u"orvakroot", u"findByPath /h/lib/f.vk", // as a file below the root
          u"spkgroot", u"orvakroot", u"exists /s/lib/f.vk"}},                          // and back
        {[](const Resolver& r) { return r.findSupportEntry(u"+p/none.vk"); },
         {u"exists +p/none.vk", u"findBySymbol p.none"}},
        {[](const Resolver& r) {
             for (const auto type : {Type::KELPath, Type::KELBuiltin, Type::ORVAKBuiltin, Type::ORVAKBuiltinMethod}) {
                 static_cast<void>(r.isUserResult({u"/w/f.vk", type}));
             }
         },
         {}},
        {[](const Resolver& r) {
             for (int i = 0; i < 2; ++i) { // the host's folders once
                 static_cast<void>(r.isUserResult({u"/w/f.vk", Type::ORVAKPath}));
             }
         },
         {u"orvakroot", u"orvakroot", u"spkgroot", u"spkgroot"}},
        {[](const Resolver& r) {
             for (const auto type : {Type::KELBuiltin, Type::ORVAKBuiltin, Type::ORVAKBuiltinMethod}) {
                 static_cast<void>(r.isSupportedForCodegen({u"/w/f.vk", type}, u"f"));
             }
         },
         {}},
        {[](const Resolver& r) { return r.unorderedResolveWithoutRedirect(u"f"); },
         {u"exists f", u"findBySymbol f", u"spkgroot", u"orvakroot", u"exists /s/lib/f.vk", u"isOnKELPath /s/lib/f.vk",
          u"which f"}},
        {[](const Resolver& r) { return r.resolveWithoutRedirect(u"h"); }, // each key of each candidate once
         {u"exists h", u"findBySymbol h", u"which h", u"spkgroot", u"orvakroot", u"findByPath /w/h.vk", u"spkgroot",
          u"orvakroot", u"findByPath /w/h", u"orvakroot", u"orvakroot", u"spkgroot", u"spkgroot"}},
        {[](const Resolver& r) {
             return r.resolve(u"r");
         }, // a target named twice is resolved twice, each when its turn comes
         {u"exists r", u"findBySymbol r", u"exists g", u"findBySymbol g", u"which g", u"exists g", u"findBySymbol g",
          u"which g", u"exists r", u"findBySymbol r", u"isOnKELPath r", u"isOnKELPath r", u"which r"}},
        {[&](const Resolver& r) { // the last: without packages nothing is moved
             world.spkgroot.reset();
             return r.findByPath(u"/s/none.vk");
         },
         {u"spkgroot", u"findByPath /s/none.vk"}},
    };
    for (const auto& test : cases) {
        const auto resolver = makeResolver(world);
        EXPECT_EQ(world.questions(), (&test == cases ? Texts() : Texts{u"~fileSystem", u"~metadata", u"~which"}));
        test.ask(resolver);
        EXPECT_EQ(world.questions(), test.questions) << "case " << &test - cases;
    }
}

TEST(StablePartition, IsTheStandardOneAndAsksOfEachOnce) {
    for (std::size_t count = 0; count < 70; ++count) {
        std::vector<int> list(count);
        std::iota(list.begin(), list.end(), 1);
        auto expected = list;
        const auto original = list;
        const auto holds = [](int number) { return number * number % 7 > 2; };
        const auto end = std::stable_partition(expected.begin(), expected.end(), holds) - expected.begin();
        std::vector<int> asked;
        const auto found = kelwhich::stablePartition(list.begin(), list.end(), [&](int number) {
            asked.push_back(number);
            return holds(number);
        });
        EXPECT_EQ(found - list.begin(), end);
        EXPECT_EQ(list, expected);
        EXPECT_EQ(asked, original);
    }
}

TEST(Resolver, JudgesAKindOutsideTheFiveAsAFile) {
    constexpr auto unknown = Type{7};
    World world;
    world.add({}, supported(u"/w/f.vk"));
    world.hostAnswers[u"f"] = {
        {u"/w/g.vk", unknown}, {u"/w/f.x", unknown}, {u"/private/f.vk", unknown}, {u"/w/f.vk", unknown}};
    RecordingHost::reset();
    const auto resolver = makeResolver(world);
    EXPECT_EQ(
        resolver.resolve(u"f"),
        (Results{{u"/w/f.vk", unknown}, {u"/private/f.vk", unknown}, {u"/w/f.x", unknown}, {u"/w/g.vk", unknown}}));
    EXPECT_FALSE(resolver.isUserResult({u"/w/f.vk", unknown}));
    EXPECT_FALSE(resolver.isSupportedForCodegen({u"/w/g.vk", unknown}, u"f"));
}

} // namespace
} // namespace tessgen::test
