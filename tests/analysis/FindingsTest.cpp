#include "analysis/Findings.hpp"

#include "analysis/Answer.hpp"
#include "tests/support/RecordingHost.hpp"
#include "tests/support/World.hpp"

#include <gtest/gtest.h>

namespace tessgen::test {
namespace {

// A line for each: "LEVEL CODE: PATH, OTHER by key NUMBER: MESSAGE".
std::string textOf(const std::vector<analysis::Finding>& findings) {
    std::string text;
    for (const auto& finding : findings) {
        text.append(levelName(finding.level)).append(" ").append(finding.code).append(": ");
        text += ascii(finding.path) + (finding.other.empty() ? "" : ", ") + ascii(finding.other)
                + (finding.key ? " by key " + std::to_string(static_cast<int>(*finding.key)) : "") + ": "
                + ascii(finding.message) + "\n";
    }
    return text;
}

std::string ofUse(World world, bool exists = true) {
    return textOf(analysis::findingsOfUse(makeResolver(world).explain(u"f"), exists));
}

std::string ofDefinition(World world, const analysis::Definition& definition) {
    return textOf(analysis::findingsOfDefinition(definition, makeResolver(world).explain(ownName(definition))));
}

World found(const Results& results) {
    World world;
    world.hostAnswers[u"f"] = results;
    world.kelFiles = {u"/k/f.vk", u"/l/f.vk", u"/k/g.vk", u"/k/h.vk", u"/k/@C/f.vk"};
    return world;
}

TEST(Findings, NameBothFilesTheKeyAndTheReason) {
    RecordingHost::reset();
    World world = found({});
    EXPECT_EQ(ofUse(world), "error no-candidate: : nothing is found under this name\n");
    world.add({u"f"}, redirect(u"/w/f.vk", u"g"));
    EXPECT_EQ(ofUse(world),
              "error no-candidate: , /w/f.vk: f.vk has a record, but the host does not find it\n"
              "warning redirect-dead: /w/f.vk: the record of f.vk redirects to g, and nothing is found there\n");
    EXPECT_EQ(ofUse(found({{u"/w/private/f.vk", Type::ORVAKPath}})),
              "error no-candidate: , /w/private/f.vk: f.vk lies in a private folder, which a name without \"/\" does "
              "not reach\n");
    EXPECT_EQ(ofUse(found({{u"f", Type::ORVAKBuiltin}})),
              "error unsupported: f: the built-in f is not supported, like every host built-in\n");

    world = found({{u"/w/f.vk", Type::ORVAKPath}, {u"f", Type::ORVAKBuiltin}});
    world.add({u"f"}, {.symbol = u"f", .path = u"/w/f.vk", .unsupportedSymbols = {}});
    EXPECT_EQ(ofUse(world),
              "error unsupported: /w/f.vk: your f.vk is not supported: its record sets no flag\n"
              "note hides-host: /w/f.vk, f by key 1: your f.vk comes before the built-in f of the host\n");

    world = found({{u"/w/f.vk", Type::ORVAKPath}});
    world.add({u"f"}, supported(u"/k/f.vk"));
    const std::string hiding =
        " unsupported: /w/f.vk: your f.vk is not supported: it has no record\n"
        "warning hides-supported: /w/f.vk, /k/f.vk by key 1: your f.vk comes before 1 supported definition\n"
        "note hides-host: /w/f.vk, /k/f.vk by key 1: your f.vk comes before f.vk of the code generator\n";
    EXPECT_EQ(ofUse(world), "error" + hiding);
    EXPECT_EQ(ofDefinition(world, {u"/w/f.vk", {u"f"}, true, false, true}), "note" + hiding);
    EXPECT_EQ(ofDefinition(world, {u"/k/f.vk", {u"f"}, true, true, false}),
              "warning hidden: /k/f.vk, /w/f.vk by key 1: hidden by your f.vk\n");
    EXPECT_EQ(ofDefinition(world, {u"/w/gone/f.vk", {u"f"}, true, false, true}), // since its names were gathered
              "warning hidden: /w/gone/f.vk, /w/f.vk: hidden by your f.vk\n");
    world.add({u"f"}, supported(u"/l/f.vk"));
    EXPECT_NE(ofUse(world).find("comes before 2 supported definitions"), std::string::npos);

    world = found({});
    world.add({u"f"}, supported(u"/k/f.vk"));
    world.add({u"f"}, builtin(u"/k/f.vk"));
    EXPECT_EQ(ofDefinition(world, {u"/k/f.vk", {u"f"}, true, true, false}),
              "warning hidden: /k/f.vk, /k/f.vk by key 4: hidden by the built-in /k/f.vk\n"); // which is no file

    world = found({});
    auto refused = supported(u"/k/g.vk");
    refused.unsupportedSymbols = {u"f"};
    world.add({u"f"}, refused);
    EXPECT_EQ(ofUse(world), "error unsupported: /k/g.vk: g.vk is not supported: its record lists f as unsupported\n"
                            "warning only-indirect: /k/g.vk: nothing defines the name itself; g.vk defines g\n");
}

TEST(Findings, SayWhichOrderDecides) {
    RecordingHost::reset();
    EXPECT_NE(ofUse(found({{u"/w/f.vk", Type::ORVAKPath}, {u"/v/f.vk", Type::ORVAKPath}}))
                  .find("warning order-only: /w/f.vk, /v/f.vk by key 5: only the order of the search puts the first "
                        "before the second\n"),
              std::string::npos);
    auto world = found({});
    world.add({u"f"}, supported(u"/k/f.vk"));
    world.add({u"f"}, supported(u"/l/f.vk"));
    EXPECT_EQ(ofUse(world, false),
              "error missing-file: /k/f.vk: f.vk does not exist, and only its record leads to it\n"
              "warning order-only: /k/f.vk, /l/f.vk by key 5: only the order of the records puts the first before the "
              "second\n");
    world = found({{u"/v/@C/f.vk", Type::ORVAKPath}});
    world.add({u"f"}, {.symbol = u"f", .path = u"/w/g.vk", .unsupportedSymbols = {}});
    EXPECT_NE(ofUse(world).find("only the order in which they were found puts"), std::string::npos);
}

TEST(Findings, NameTheRedirect) {
    RecordingHost::reset();
    World world = found({});
    world.add({u"f", u"f"}, redirect(u"/k/f.vk", u"g"));
    world.add({u"f", u"f"}, redirect(u"/k/h.vk", u"g"));
    world.add({u"f"}, redirect(u"/k/@C/f.vk", u"x"));
    const auto ignored = [](const std::string& path) {
        return "warning redirect-ignored: " + path + ", /k/h.vk: a redirect to g does not count: h.vk defines h\n"
               + "warning redirect-ignored: " + path
               + ", /k/@C/f.vk: a redirect to x does not count: f.vk is a method of a class\n";
    };
    EXPECT_EQ(ofUse(world), "warning redirect-dead: /k/f.vk: the record of f.vk redirects to g, and nothing is found "
                            "there\n"
                                + ignored("/k/f.vk"));
    world.add({u"g"}, supported(u"/k/g.vk"));
    EXPECT_EQ(ofUse(world), ignored("/k/g.vk"));
    EXPECT_EQ(ofDefinition(world, {u"/k/f.vk", {u"f"}, true, true, false}),
              "warning hidden: /k/f.vk, /k/g.vk: hidden by g.vk, by a redirect to g\n");
}

TEST(Definition, IsAskedAboutByTheNameThatItDefinesOrTheFirstThatReachesIt) {
    for (const auto& [names, name] : {std::pair<std::vector<std::u16string>, std::u16string>{{}, u"p.f"},
                                      {{u"a", u"p.f"}, u"p.f"},
                                      {{u"a", u"b"}, u"a"}}) {
        EXPECT_EQ(ownName(analysis::Definition{u"/w/+p/f.vk", names, true, false, true}), name);
    }
}

TEST(Findings, SayWhatKeepsNamesFromAFile) {
    const std::pair<analysis::Definition, std::string> cases[] = {
        {{u"/w/a.b.vk", {}, true, true, true}, "no name spells its file name and folders"},
        {{u"/w/private/a.txt", {}, false, false, true},
         "its extension is not searched for, and it lies in a private folder"},
        {{u"/w/a.vk", {}, true, false, false}, "its folder is not on the search path"},
        {{u"/k/a.vk", {}, true, true, false}, "no support record leads to it, as to a KEL path file one must"},
        {{u"/k/private/a.vk", {}, true, true, false}, "it lies in a private folder"},
        {{u"/k/@C/private/a.vk", {}, true, true, false},
         "it lies in a private folder, and no support record leads to it, as to a KEL path file one must"}};
    for (const auto& [definition, why] : cases) {
        EXPECT_EQ(ofDefinition({}, definition), "warning unreachable: " + ascii(definition.path)
                                                    + ": no plain or dotted name reaches it: " + why + "\n");
    }
}

// Records and hosts may name files by paths that lead nowhere, and built-ins by any text.
TEST(Answer, IsOfAFileToLookForOnlyByAnAbsolutePath) {
    using kelwhich::WhichResultType;
    EXPECT_TRUE(analysis::isAbsoluteFile({u"/k/f.vk", WhichResultType::KELPath}));
    EXPECT_FALSE(analysis::isAbsoluteFile({u"f.vk", WhichResultType::ORVAKPath}));
    EXPECT_FALSE(analysis::isAbsoluteFile({u"/f", WhichResultType::ORVAKBuiltin}));
}

} // namespace
} // namespace tessgen::test
