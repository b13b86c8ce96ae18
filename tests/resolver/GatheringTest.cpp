#include "tests/support/World.hpp"

#include <gtest/gtest.h>

namespace tessgen::test {
namespace {

TEST(Gathering, TakesRecordsThenTheHostsAnswersEachAskedForOnce) {
    World world;
    world.kelFiles = {u"/k/f.vk"};
    world.add({u"f"}, supported(u"/w/other.vk"));
    world.add({u"f"}, builtin(u"f"));
    world.add({u"f"}, supported(u"/k/f.vk"));
    world.hostAnswers[u"f"] = {{u"f", Type::ORVAKBuiltin}, {u"/w/f.vk", Type::ORVAKPath}};
    const auto resolver = makeResolver(world);
    EXPECT_EQ(resolver.unorderedResolveWithoutRedirect(u"f"), (Results{{u"/w/other.vk", Type::ORVAKPath},
                                                                       {u"f", Type::KELBuiltin},
                                                                       {u"/k/f.vk", Type::KELPath},
                                                                       {u"f", Type::ORVAKBuiltin},
                                                                       {u"/w/f.vk", Type::ORVAKPath}}));
    EXPECT_EQ(world.questions(), (Texts{u"exists f", u"findBySymbol f", u"spkgroot", u"spkgroot",
                                        u"isOnKELPath /w/other.vk", u"isOnKELPath /k/f.vk", u"which f"}));
    EXPECT_EQ(resolver.unorderedResolveWithoutRedirect(u"none"), Results());
}

// Which record of a host file stays beside the host's own answers.
TEST(Gathering, KeepsARecordOfAHostFileOnlyWhenItDefinesAnotherPlainName) {
    struct Case {
        std::u16string name;
        std::u16string path;
        bool stays;
    };
    const Case cases[] = {
        {u"f", u"/w/f.vk", false},         {u"f", u"/w/@f/f.vk", false}, {u"f", u"/w/@f/private/f.vk", false},
        {u"f", u"/w/g.vk", true},          {u"f", u"/w/@C/f.vk", true},  {u"f", u"/w/+p/f.vk", true},
        {u"p.f", u"/w/+p/f.vk", false},    {u"p.f", u"/w/g.vk", false},  {u"w/f.vk", u"/w/f.vk", false},
        {u"f", u"/w/private/g.vk", false}, // stays at first, and is then left out as a private file
    };
    for (const auto& test : cases) {
        World world;
        world.add({u"f", u"p.f"}, supported(test.path));
        const auto results = makeResolver(world).unorderedResolveWithoutRedirect(test.name);
        EXPECT_EQ(!results.empty(), test.stays) << testing::PrintToString(test.path);
    }
}

TEST(Gathering, LeavesPrivateFilesOutUnlessAPathIsAsked) {
    struct Case {
        WhichResult result;
        bool stays;
    };
    const Case cases[] = {
        {{u"/w/private/f.vk", Type::ORVAKPath}, false},
        {{u"/w/private/f.vk", Type::KELPath}, false},
        {{u"private/f.vk", Type::ORVAKPath}, false},
        {{u"/w/private/private/f.vk", Type::ORVAKPath}, false},
        {{u"/w/@C/private/private/f.vk", Type::ORVAKPath}, false},
        {{u"/w/@C/private/f.vk", Type::ORVAKPath}, true},
        {{u"/w/Private/f.vk", Type::ORVAKPath}, true},
        {{u"/w/private/sub/f.vk", Type::ORVAKPath}, true},
        {{u"private", Type::ORVAKPath}, true},
        {{u"/w/private/f", Type::ORVAKBuiltin}, true},
        {{u"/w/private/f", Type::ORVAKBuiltinMethod}, true},
    };
    for (const auto& name : {u"f", u"p.f", u"w/f.vk"}) {
        for (const auto& test : cases) {
            World world;
            world.hostAnswers[name] = {test.result};
            const auto results = makeResolver(world).unorderedResolveWithoutRedirect(name);
            EXPECT_EQ(!results.empty(), test.stays || name == std::u16string(u"w/f.vk"))
                << testing::PrintToString(test.result.path);
        }
    }
}

} // namespace
} // namespace tessgen::test
