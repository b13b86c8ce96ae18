#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

namespace tessgen::test {
namespace {

class Redirects : public testing::Test {
protected:
    // A name that the host finds as a built-in, so that its place in a list shows.
    void define(const std::u16string& name) { world.hostAnswers[name] = {{name, Type::ORVAKBuiltin}}; }

    Texts resolved(const std::u16string& name) {
        Texts paths;
        for (const auto& result : makeResolver(world).resolve(name)) {
            paths.push_back(result.path);
        }
        return paths;
    }

    RecordingHost& host = RecordingHost::reset();
    World world;
};

TEST_F(Redirects, ComeFirstInTheOrderOfTheirRecords) {
    define(u"f");
    define(u"g");
    define(u"i");
    world.add({u"f"}, redirect(u"/w/f.vk", u"g"));
    world.add({u"f"}, supported(u"/w/f.vk"));
    world.add({u"f"}, redirect(u"f", u"nothing"));
    world.add({u"f"}, redirect(u"/x/f.vk", u"i"));
    EXPECT_EQ(resolved(u"f"), (Texts{u"g", u"i", u"f"}));
    EXPECT_EQ(resolved(u"g"), Texts{u"g"});
}

TEST_F(Redirects, CountOnlyFromTheRecordOfTheNameItself) {
    for (const auto* name : {u"f", u"g", u"p.f", u"w/f"}) {
        define(name);
    }
    struct Case {
        std::u16string path;
        std::u16string name;
        bool honoured;
    };
    const Case cases[] = {
        {u"/w/f.vk", u"f", true},     {u"/w/@f/f.vk", u"f", true},  {u"/w/other.vk", u"f", false},
        {u"/w/@C/f.vk", u"f", false}, {u"/w/+p/f.vk", u"f", false}, {u"/w/other.vk", u"p.f", true},
        {u"/w/f.vk", u"w/f", true},
    };
    for (const auto& test : cases) {
        world.records.clear();
        world.add({u"f", u"p.f"}, redirect(test.path, u"g"));
        EXPECT_EQ(resolved(test.name).front() == u"g", test.honoured) << testing::PrintToString(test.path);
    }
}

TEST_F(Redirects, AreFollowedOneLevelDeep) {
    define(u"a");
    define(u"b");
    define(u"c");
    world.add({u"a"}, redirect(u"/w/a.vk", u"b"));
    world.add({u"b"}, redirect(u"/w/b.vk", u"c"));
    world.add({u"c"}, redirect(u"/w/c.vk", u"a"));
    EXPECT_EQ(resolved(u"a"), (Texts{u"b", u"a"}));
    EXPECT_EQ(resolved(u"c"), (Texts{u"a", u"c"}));
    world.records.clear();
    world.add({u"a"}, redirect(u"/w/a.vk", u"a"));
    EXPECT_EQ(resolved(u"a"), Texts{u"a"});
}

TEST_F(Redirects, KeepTheFirstOfEachPathAndType) {
    world.add({u"f"}, redirect(u"/w/f.vk", u"g"));
    world.hostAnswers[u"f"] = {{u"x", Type::ORVAKBuiltin}, {u"/w/1.vk", Type::ORVAKPath}, {u"x", Type::ORVAKBuiltin}};
    world.hostAnswers[u"g"] = {{u"x", Type::ORVAKBuiltinMethod}, {u"/w/1.vk", Type::ORVAKPath}};
    EXPECT_EQ(makeResolver(world).resolve(u"f"),
              (Results{{u"/w/1.vk", Type::ORVAKPath}, {u"x", Type::ORVAKBuiltinMethod}, {u"x", Type::ORVAKBuiltin}}));
}

// A target named twice is resolved twice: nothing is remembered, and each name is resolved when its turn comes.
TEST_F(Redirects, ResolveEachTargetWhenItsTurnComes) {
    world.add({u"f"}, redirect(u"f", u"g"));
    world.add({u"f"}, redirect(u"f", u"g"));
    resolved(u"f");
    EXPECT_EQ(world.questions(),
              (Texts{u"exists f", u"findBySymbol f",                                                 // the redirects
                     u"exists g", u"findBySymbol g", u"which g",                                     // the first target
                     u"exists g", u"findBySymbol g", u"which g",                                     // the second
                     u"exists f", u"findBySymbol f", u"isOnKELPath f", u"isOnKELPath f", u"which f", // the name
                     u"~fileSystem", u"~metadata", u"~which"}));
}

} // namespace
} // namespace tessgen::test
