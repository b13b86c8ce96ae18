#include "tests/support/World.hpp"

#include <gtest/gtest.h>

namespace tessgen::test {
namespace {

Texts paths(const std::vector<kelwhich::KELWhichResolver::BasicSupportEntry>& entries) {
    Texts found;
    for (const auto& entry : entries) {
        found.push_back(entry.path);
    }
    return found;
}

// A file in a support package is looked up under the installation root, and its record mapped back if it is there.
TEST(Lookup, ByPathAsksForTheFileBelowTheInstallationRoot) {
    World world;
    world.add({u"f"}, supported(u"/h/lib/f.vk"));
    world.add({u"g"}, supported(u"/h/lib/g.vk"));
    world.files = {u"/s/lib/f.vk"};
    const auto resolver = makeResolver(world);

    EXPECT_FALSE(resolver.findByPath(u"/s/lib/f.vk"));
    EXPECT_EQ(world.questions(), (Texts{u"spkgroot", u"findByPath /s/lib/f.vk"}));

    world.spkgroot = u"/s";
    EXPECT_EQ(resolver.findByPath(u"/s/lib/f.vk").value().path, u"/s/lib/f.vk");
    EXPECT_EQ(world.questions(), (Texts{u"spkgroot", u"orvakroot", u"findByPath /h/lib/f.vk", u"spkgroot", u"orvakroot",
                                        u"exists /s/lib/f.vk"}));
    EXPECT_EQ(resolver.findByPath(u"/s/lib/g.vk").value().path, u"/h/lib/g.vk");
    EXPECT_EQ(resolver.findByPath(u"/h/lib/g.vk").value().path, u"/h/lib/g.vk");
    EXPECT_FALSE(resolver.findByPath(u"/sx/lib/f.vk"));
    EXPECT_EQ(world.questions().back(), u"findByPath /hx/lib/f.vk");
}

TEST(Lookup, BySymbolKeepsEveryRecordInOrder) {
    World world;
    world.add({u"f"}, supported(u"/w/2.vk"));
    world.add({u"g", u"f"}, builtin(u"f"));
    world.add({u"f"}, supported(u"/w/1.vk"));
    world.add({u"f"}, supported(u"/w/2.vk"));
    const auto resolver = makeResolver(world);
    EXPECT_EQ(paths(resolver.findBySymbol(u"f")), (Texts{u"/w/2.vk", u"f", u"/w/1.vk", u"/w/2.vk"}));
    EXPECT_EQ(paths(resolver.findBySymbol(u"F")), Texts());
}

// Which records a name leads to, and what the first questions are.
TEST(Lookup, OfANameTakesItAsFileThenAsSymbolThenAsPartOfAPath) {
    World world;
    world.files = {u"/w/+p/f.vk", u"/w/unknown.vk", u"f"};
    world.add({u"p.f"}, supported(u"/w/+p/f.vk"));
    world.add({u"g"}, supported(u"/w/a/b/g.vk"));
    world.add({u"g"}, supported(u"/w/x/b/g.vk"));
    world.add({u"g"}, supported(u"/w/x/b/g.vkx"));
    world.add({u"f"}, builtin(u"f"));
    const auto resolver = makeResolver(world);
    struct Case {
        std::u16string name;
        Texts found;
        Texts firstQuestions;
    };
    const Case cases[] = {
        {u"/w/+p/f.vk", {u"/w/+p/f.vk"}, {u"exists /w/+p/f.vk", u"spkgroot"}},
        {u"/w/unknown.vk", {}, {u"exists /w/unknown.vk", u"spkgroot"}},
        {u"f", {}, {u"exists f", u"spkgroot"}}, // exists, so it is no symbol
        {u"p.f", {u"/w/+p/f.vk"}, {u"exists p.f", u"findBySymbol p.f"}},
        {u"b/g.vk", {u"/w/a/b/g.vk", u"/w/x/b/g.vk", u"/w/x/b/g.vkx"}, {u"exists b/g.vk", u"findBySymbol g"}},
        {u"a/b/g.vk", {u"/w/a/b/g.vk"}, {u"exists a/b/g.vk", u"findBySymbol g"}},
        {u"+p/f.vk", {u"/w/+p/f.vk"}, {u"exists +p/f.vk", u"findBySymbol p.f"}},
        {u"A/b/g.vk", {}, {u"exists A/b/g.vk", u"findBySymbol g"}},
    };
    for (const auto& test : cases) {
        world.questions();
        EXPECT_EQ(paths(resolver.findSupportEntry(test.name)), test.found) << testing::PrintToString(test.name);
        auto questions = world.questions();
        questions.resize(2);
        EXPECT_EQ(questions, test.firstQuestions);
    }
}

} // namespace
} // namespace tessgen::test
