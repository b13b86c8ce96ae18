#include "tests/support/TemporaryFolder.hpp"
#include "tests/sweeps/Scenarios.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace tessgen::test {
namespace {

using foundation::orvakdata::Array;
using standalone::classOf;
using standalone::Extent;
using standalone::extentOf;
using standalone::makeCharArray;
using standalone::makeStringColumn;
using standalone::membersOf;
using standalone::textsOf;
using Members = std::vector<std::string>;

// A host that finds all five kinds of `f`.
class Invoke : public testing::Test {
protected:
    Invoke() {
        RecordingHost::reset().kelPath = {u"/k"};
        host().metadata.add({u"f"}, builtin(u"f"));
        host().metadata.add({u"f"}, supported(u"/k/f.vk"));
        host().answer = [](const auto& evaluation) -> std::vector<Array> {
            if (evaluation.arguments.empty()) {
                return {Array()};
            }
            const foundation::orvakdata::StringArray name(evaluation.arguments.front());
            if (std::u16string(name.begin().getRef()) != u"f") {
                return {makeStringColumn({}), makeStringColumn({})};
            }
            return {makeStringColumn({u"/w/f.vk", u"built-in", u"a method"}), makeStringColumn({u"", u"", u""})};
        };
    }

    void TearDown() override { EXPECT_EQ(standalone::arraysAlive(), 0U); }

    static RecordingHost& host() { return RecordingHost::instance(); }
};

TEST_F(Invoke, WritesAsManyOutputsAsAreAskedForAndThePathsAlways) {
    for (const int outputCount : {0, 1, 2, 3}) {
        GatewayCall call;
        call(outputCount);
        EXPECT_EQ(textsOf(call.outputs[0]), (Texts{u"/w/f.vk", u"f", u"/k/f.vk", u"f", u"f"}));
        ASSERT_EQ(call.outputs[1] != nullptr, outputCount >= 2);
        EXPECT_EQ(call.outputs[2], nullptr);
        if (outputCount >= 2) {
            EXPECT_EQ(classOf(call.outputs[1]), "tessapp.internal.screener.WhichResultType");
            EXPECT_EQ(extentOf(call.outputs[1]), (Extent{1, 5}));
            EXPECT_EQ(membersOf(call.outputs[1]),
                      (Members{"ORVAKPath", "KELBuiltin", "KELPath", "ORVAKBuiltin", "ORVAKBuiltin"}));
        }
    }
}

TEST_F(Invoke, GivesEmptyArraysWhenThereIsNoCandidate) {
    GatewayCall call;
    call(2, standalone::makeText(u"none"));
    EXPECT_EQ(textsOf(call.outputs[0]), Texts());
    EXPECT_EQ(extentOf(call.outputs[1]), (Extent{1, 0}));
}

TEST_F(Invoke, ResolvesNothingWithoutAText) {
    GatewayCall call;
    try {
        call(2, matrix::create_cell({u"f"}));
        FAIL();
    } catch (const std::logic_error& error) {
        EXPECT_STREQ(error.what(), "basic_string: construction from null is not valid");
    }
    EXPECT_TRUE(host().evaluations.empty());
    EXPECT_EQ(call.outputs[0], nullptr);
}

// The whole road over the real disk and a host that records: the support-package root is asked for once a call, the
// host's own look-up each time, and the next call sees what has changed.
TEST(Kelwhich, ResolvesOverTheHostAndForgetsEverything) {
    TemporaryFolder folder;
    const auto root = std::filesystem::path(folder.path()).u16string();
    auto& host = RecordingHost::reset();
    host.root = root + u"/h";
    host.kelPath = {root + u"/s/kel"};
    host.metadata.add({u"f"}, supported(root + u"/h/kel/f.vk"));
    host.metadata.add({u"f"}, redirect(root + u"/h/f.vk", u"g"));
    host.metadata.add({u"f"}, redirect(root + u"/h/f.vk", u"g")); // resolved twice
    host.answer = [&](const RecordingHost::Evaluation& evaluation) -> std::vector<Array> {
        if (evaluation.arguments.empty()) {
            return {makeCharArray(root + u"/s")};
        }
        return {makeStringColumn({u"built-in"}), makeStringColumn({u""})};
    };
    EXPECT_EQ(kelwhich::kelwhich(u"f"), (Results{{u"g", Type::ORVAKBuiltin}, {u"f", Type::ORVAKBuiltin}}));
    EXPECT_EQ(host.evaluations.size(), 4U);

    folder.write("s/kel/f.vk", "");
    EXPECT_EQ(
        kelwhich::kelwhich(u"f"),
        (Results{{u"g", Type::ORVAKBuiltin}, {root + u"/s/kel/f.vk", Type::KELPath}, {u"f", Type::ORVAKBuiltin}}));
    EXPECT_EQ(host.evaluations.size(), 8U);

    host.metadata.add({}, supported(u"/w/2/h.vk"));
    host.answer = [](const RecordingHost::Evaluation& evaluation) -> std::vector<Array> {
        if (evaluation.arguments.empty()) {
            return {Array()};
        }
        return {makeStringColumn({u"/w/1/h.vk", u"/w/2/h.vk"}), makeStringColumn({u"", u""})};
    };
    EXPECT_EQ(kelwhich::kelwhich(u"h"), (Results{{u"/w/2/h.vk", Type::ORVAKPath}, {u"/w/1/h.vk", Type::ORVAKPath}}));
}

} // namespace
} // namespace tessgen::test
