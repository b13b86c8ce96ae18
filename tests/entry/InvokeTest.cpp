#include "tessgen/kelwhich/invoke.hpp"

#include "standalone/services/DataArrays.hpp"
#include "tests/support/FakeArrays.hpp"
#include "tests/support/Faults.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tessgen::test {
namespace {

using Members = std::vector<std::string>;

// A host that finds all five kinds of `f`, and the slots of a call.
class Invoke : public testing::Test {
protected:
    Invoke() {
        RecordingHost::reset().kelPath = {u"/k"};
        host().metadata.add({u"f"}, builtin(u"f"));
        host().metadata.add({u"f"}, supported(u"/k/f.vk"));
        host().answer = [](const auto& evaluation) -> std::vector<foundation::orvakdata::Array> {
            if (evaluation.arguments.empty()) {
                return {foundation::orvakdata::Array()};
            }
            const foundation::orvakdata::StringArray name(evaluation.arguments.front());
            if (std::u16string(name.begin().getRef()) != u"f") {
                return {standalone::makeStringColumn({}), standalone::makeStringColumn({})};
            }
            return {standalone::makeStringColumn({u"/w/f.vk", u"built-in", u"a method"}),
                    standalone::makeStringColumn({u"", u"", u""})};
        };
    }

    static RecordingHost& host() { return RecordingHost::instance(); }
    static FakeArrays& arrays() { return FakeArrays::instance(); }

    void call(int outputCount, const std::optional<std::u16string>& name = u"f") {
        qxArray input{.kind = "text", .text = name, .texts = {}, .members = {}};
        qxArray* inputs[] = {&input};
        outputs[0] = outputs[1] = outputs[2] = &untouched;
        kelwhich::invoke(outputCount, outputs, 1, inputs);
    }

    // Gives the outputs back, and sees that nothing else is left.
    void release() {
        for (auto*& output : outputs) {
            if (output != &untouched) {
                EXPECT_EQ(output->references, 1);
                matrix::ArrayDeleter()(std::exchange(output, &untouched));
            }
        }
        EXPECT_EQ(arrays().alive, 0);
    }

    FakeArrays& fresh = FakeArrays::reset();
    qxArray untouched{.kind = "untouched", .text = {}, .texts = {}, .members = {}};
    qxArray* outputs[3] = {};
};

TEST_F(Invoke, WritesAsManyOutputsAsAreAskedForAndThePathsAlways) {
    for (const int outputCount : {0, 1, 2, 3}) {
        call(outputCount);
        EXPECT_EQ(outputs[0]->kind, "string");
        EXPECT_EQ(outputs[0]->texts, (Texts{u"/w/f.vk", u"f", u"/k/f.vk", u"f", u"f"}));
        EXPECT_EQ(outputs[2], &untouched);
        if (outputCount < 2) {
            EXPECT_EQ(outputs[1], &untouched);
        } else {
            EXPECT_EQ(outputs[1]->kind, "tessapp.internal.screener.WhichResultType");
            EXPECT_EQ(outputs[1]->rows, 1U);
            EXPECT_EQ(outputs[1]->members,
                      (Members{"ORVAKPath", "KELBuiltin", "KELPath", "ORVAKBuiltin", "ORVAKBuiltin"}));
        }
        release();
    }
}

TEST_F(Invoke, GivesEmptyArraysWhenThereIsNoCandidate) {
    call(2, u"none");
    EXPECT_EQ(outputs[0]->texts, Texts());
    EXPECT_EQ(outputs[1]->members, Members());
    EXPECT_EQ(outputs[1]->rows, 1U);
    EXPECT_EQ(arrays().used, (Members{"text", "cell", "string of cell", "to host",
                                      "intern tessapp.internal.screener.WhichResultType", "enumeration"}));
    release();
}

TEST_F(Invoke, ResolvesNothingWithoutAText) {
    try {
        call(2, std::nullopt);
        FAIL();
    } catch (const std::logic_error& error) {
        EXPECT_STREQ(error.what(), "basic_string: construction from null is not valid");
    }
    EXPECT_TRUE(host().evaluations.empty());
    EXPECT_EQ(arrays().used, Members{"text"});
    EXPECT_EQ(outputs[0], &untouched);
    release();
}

TEST_F(Invoke, HasWrittenThePathsWhenTheKindsFail) {
    Faults::arm(Faults::none, nullptr);
    call(2);
    release();
    Faults::arm(Faults::asked - 1, std::make_exception_ptr(std::runtime_error("the last one")));
    EXPECT_THROW(call(2), std::runtime_error);
    Faults::disarm();
    EXPECT_EQ(outputs[0]->texts.size(), 5U);
    EXPECT_EQ(outputs[1], &untouched);
    release();
}

} // namespace
} // namespace tessgen::test
