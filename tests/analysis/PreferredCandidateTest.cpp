#include "analysis/PreferredCandidate.hpp"

#include "tests/support/RecordingHost.hpp"
#include "tests/support/World.hpp"

#include <gtest/gtest.h>

namespace tessgen::test {
namespace {

using Key = kelwhich::Explanation::Key;

// What is found: "LEVEL CODE: PATH, OTHER: MESSAGE".
std::string foundIn(World world, bool exists = true) {
    RecordingHost::reset().sourceCodeDirs = {{u"t"}};
    const auto finding = analysis::mainFinding(makeResolver(world).explain(u"f"), exists);
    const auto ascii = [](const std::u16string& text) { return std::string(text.begin(), text.end()); };
    return finding ? std::string(levelName(finding->level)) + " " + std::string(finding->code) + ": "
                         + ascii(finding->path) + ", " + ascii(finding->other) + ": " + ascii(finding->message)
                   : "";
}

World found(const Texts& paths) {
    World world;
    for (const auto& path : paths) {
        world.hostAnswers[u"f"].push_back({path, Type::ORVAKPath});
    }
    return world;
}

TEST(PreferredCandidate, HasTheFindingThatMattersMost) {
    EXPECT_EQ(foundIn({}, false), "");
    EXPECT_EQ(foundIn(found({u"/w/f.vk"})), "");
    EXPECT_EQ(foundIn(found({u"/h/t/f.vk", u"/w/f.vk"})), "");
    EXPECT_EQ(foundIn(found({u"/w/@C/f.vk", u"/w/g/f.vk", u"/v/f.vk"})),
              "warning order-only: /w/g/f.vk, /v/f.vk: only the order of the search puts the first before the second");

    auto world = found({u"/w/f.vk", u"/v/f.vk"});
    world.kelFiles = {u"/k/f.vk", u"/l/f.vk"};
    world.add({u"f"}, supported(u"/k/f.vk"));
    EXPECT_EQ(foundIn(world),
              "warning hides-supported: /w/f.vk, /k/f.vk: your f.vk comes before 1 supported definition");
    world.add({u"f"}, supported(u"/k/f.vk"));
    world.add({u"f"}, supported(u"/l/f.vk"));
    EXPECT_EQ(foundIn(world),
              "warning hides-supported: /w/f.vk, /k/f.vk: your f.vk comes before 2 supported definitions");
    world.hostAnswers.clear();
    EXPECT_EQ(foundIn(world),
              "warning order-only: /k/f.vk, /l/f.vk: only the order of the records puts the first before the second");
    EXPECT_EQ(foundIn(world, false),
              "error missing-file: /k/f.vk, : f.vk does not exist, and only its record leads to it");
    world.hostAnswers[u"f"] = {{u"f", Type::ORVAKBuiltin}};
    EXPECT_EQ(foundIn(world),
              "warning order-only: /k/f.vk, /l/f.vk: only the order of the records puts the first before the second");
    world = found({u"/v/@C/f.vk"});
    world.add({u"f"}, {.symbol = u"f", .path = u"/w/g.vk", .unsupportedSymbols = {}});
    EXPECT_EQ(foundIn(world),
              "warning order-only: /w/g.vk, /v/@C/f.vk: only the order in which they were found puts the first "
              "before the second");
    world = {};
    world.hostAnswers[u"f"] = {{u"f", Type::ORVAKBuiltin}};
    world.add({u"f"}, supported(u"/k/g.vk"));
    EXPECT_EQ(foundIn(world),
              "warning hides-supported: f, /k/g.vk: the built-in f comes before 1 supported definition");
}

TEST(PreferredCandidate, IsComparedWithinItsOwnName) {
    auto world = found({u"/v/f.vk"});
    world.hostAnswers[u"g"] = {{u"/w/g.vk", Type::ORVAKPath}};
    world.kelFiles = {u"/k/f.vk"};
    world.add({u"f"}, redirect(u"/k/f.vk", u"g"));
    const auto finding = analysis::hidesSupported(makeResolver(world).explain(u"f"));
    ASSERT_TRUE(finding);
    EXPECT_EQ(finding->key, std::nullopt);
    world.records.clear();
    auto unsupported = redirect(u"/v/f.vk", u"g");
    unsupported.supportFlags = {};
    world.add({u"f"}, unsupported);
    EXPECT_EQ(analysis::orderOnly(makeResolver(world).explain(u"f")), std::nullopt);
}

} // namespace
} // namespace tessgen::test
