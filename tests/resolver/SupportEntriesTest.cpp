#include "tests/support/World.hpp"

#include <gtest/gtest.h>

namespace tessgen::test {
namespace {

// The rewrite of a record's path below the support-package root: result and questions.
TEST(SupportEntries, AreMovedToSupportPackagesWhenTheFileIsThere) {
    struct Case {
        std::u16string path;
        bool isBuiltin;
        std::optional<std::u16string> spkgroot;
        std::u16string result;
        Texts questions;
    };
    const std::u16string moved = u"/s/lib/f.vk";
    const Case cases[] = {
        {u"/h/lib/f.vk", false, u"/s", moved, {u"spkgroot", u"orvakroot", u"exists /s/lib/f.vk"}},
        {u"/h/lib/g.vk", false, u"/s", u"/h/lib/g.vk", {u"spkgroot", u"orvakroot", u"exists /s/lib/g.vk"}},
        {u"/hx/f.vk", false, u"/s", u"/sx/f.vk", {u"spkgroot", u"orvakroot", u"exists /sx/f.vk"}},
        {u"/w/f.vk", false, u"/s", u"/w/f.vk", {u"spkgroot", u"orvakroot", u"exists /w/f.vk"}},
        {u"/", false, u"/s", u"/", {u"spkgroot", u"orvakroot", u"exists /"}},
        {u"/h/lib/f.vk", false, std::nullopt, u"/h/lib/f.vk", {u"spkgroot"}},
        {u"f.vk", false, u"/s", u"f.vk", {}},
        {u"/h/lib/f.vk", true, u"/s", u"/h/lib/f.vk", {}},
    };
    for (const auto& test : cases) {
        World world;
        world.files = {moved, u"/sx/f.vk"};
        world.spkgroot = test.spkgroot;
        const auto resolver = makeResolver(world);
        const auto entry = std::make_shared<const SupportEntry>(SupportEntry{
            .isBuiltin = test.isBuiltin, .symbol = u"target", .path = test.path, .unsupportedSymbols = {}});
        const auto basic = resolver.entryToBasicEntry(entry);
        EXPECT_EQ(basic.path, test.result);
        EXPECT_EQ(basic.builtin, test.isBuiltin);
        EXPECT_EQ(basic.symbol, u"target");
        EXPECT_EQ(basic.entry, entry);
        EXPECT_EQ(world.questions(), test.questions) << testing::PrintToString(test.path);
    }
}

TEST(SupportEntries, AreSupportedWhenAnyFlagIsSet) {
    World world;
    const auto resolver = makeResolver(world);
    for (std::size_t set = 0; set <= 6; ++set) {
        SupportEntry entry;
        entry.isRedirect = set == 6;
        if (set < 6) {
            entry.supportFlags.at(set) = true;
        }
        const auto basic = resolver.entryToBasicEntry(std::make_shared<const SupportEntry>(entry));
        EXPECT_EQ(basic.supported, set < 6);
        EXPECT_EQ(basic.carriedFlag, set == 6);
    }
}

TEST(SupportEntries, BecomeCandidatesByWhereTheyLie) {
    World world;
    world.kelFiles = {u"/k/f.vk"};
    const auto resolver = makeResolver(world);
    const auto candidate = [&](const SupportEntry& entry) {
        return resolver.entryToWhichResult(resolver.entryToBasicEntry(std::make_shared<const SupportEntry>(entry)));
    };
    EXPECT_EQ(candidate(supported(u"/k/f.vk")), (WhichResult{u"/k/f.vk", Type::KELPath}));
    EXPECT_EQ(candidate(supported(u"/w/f.vk")), (WhichResult{u"/w/f.vk", Type::ORVAKPath}));
    EXPECT_EQ(world.questions(), (Texts{u"spkgroot", u"isOnKELPath /k/f.vk", u"spkgroot", u"isOnKELPath /w/f.vk"}));
    EXPECT_EQ(candidate(builtin(u"/k/f.vk")), (WhichResult{u"/k/f.vk", Type::KELBuiltin}));
    EXPECT_EQ(world.questions(), Texts());
}

TEST(Resolver, AsksNothingWhenMadeAndGivesItsCollaboratorsUpInOrder) {
    World world;
    { const auto resolver = makeResolver(world); }
    EXPECT_EQ(world.questions(), (Texts{u"~fileSystem", u"~metadata", u"~which"}));
}

} // namespace
} // namespace tessgen::test
