#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"

#include "standalone/services/DataArrays.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <exception>
#include <optional>

namespace tessgen::test {
namespace {

using foundation::orvakdata::Array;
using standalone::makeCharArray;
using standalone::makeStringColumn;

Results which(const Texts& lines, const Texts& partners) {
    RecordingHost::reset().answer = [&](const auto&) -> std::vector<Array> {
        return {makeStringColumn({lines.begin(), lines.end()}), makeStringColumn({partners.begin(), partners.end()}),
                makeCharArray(u"more than was asked for")};
    };
    return kelwhich::ORVAKWhichResolver().which(u"f");
}

TEST(ORVAKWhichResolver, EvaluatesOneHostFunctionPerQuestion) {
    const std::u16string name(u"a \0\xD800 name", 8);
    auto& host = RecordingHost::reset();
    host.answer = [](const auto&) -> std::vector<Array> { return {makeStringColumn({}), makeStringColumn({})}; };
    const kelwhich::ORVAKWhichResolver resolver;
    EXPECT_EQ(resolver.which(name), Results());
    EXPECT_EQ(resolver.which(name), Results());
    ASSERT_EQ(host.evaluations.size(), 2U);
    const auto& evaluation = host.evaluations.front();
    EXPECT_EQ(evaluation.function, "tessapp.internal.screener.resolver.callWhichString");
    EXPECT_EQ(evaluation.outputCount, 2U);
    EXPECT_FALSE(evaluation.flag);
    EXPECT_EQ(evaluation.options.interruptible, cmddistributor::RunOptions().interruptible);
    EXPECT_NE(evaluation.requestId, host.evaluations.back().requestId);
    ASSERT_EQ(evaluation.arguments.size(), 1U);
    const foundation::orvakdata::StringArray argument(evaluation.arguments.front());
    EXPECT_EQ(std::u16string(argument.begin().getRef()), name);
}

TEST(ORVAKWhichResolver, ReadsEachLineWithItsPartner) {
    struct Case {
        std::u16string line;
        std::u16string partner;
        WhichResult result;
    };
    const WhichResult function{u"f", Type::ORVAKBuiltin};
    const WhichResult method{u"f", Type::ORVAKBuiltinMethod};
    const Case cases[] = {
        {u"/lib/f.vk", u"a constructor", {u"/lib/f.vk", Type::ORVAKPath}},
        {u"/x/y method", u"", {u"/x/y method", Type::ORVAKPath}},
        {u"/\xD800.vk", u"", {u"/\xD800.vk", Type::ORVAKPath}},
        {u"f.vk", u"", function},
        {u"", u"", function},
        {u" /lib/f.vk", u"", function},
        {u"f is a built-in method", u"table method", method},
        {u"f is a built-in method", u"table constructor", function},
        {u"f is a built-in method", u"constructor", method},
        {u"f is a built-in method", u"table Constructor", method},
        {u"f methods", u"", method},
        {u"f Method", u"", function},
        {u"method", u"", function},
        {u"f constructor", u"table method", function},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(which({test.line}, {test.partner}), Results{test.result}) << testing::PrintToString(test.line);
    }
    EXPECT_EQ(which({u"/2.vk", u"/1.vk", u"/2.vk"}, {u"", u""}),
              (Results{{u"/2.vk", Type::ORVAKPath}, {u"/1.vk", Type::ORVAKPath}}));
    EXPECT_EQ(which({u"/1.vk"}, {}), Results());
    EXPECT_EQ(which({u"/1.vk"}, {u"", u"of none"}), (Results{{u"/1.vk", Type::ORVAKPath}}));
}

TEST(ORVAKWhichResolver, FailsWhenTheHostAnswersSomethingElse) {
    auto& host = RecordingHost::reset();
    const kelwhich::ORVAKWhichResolver resolver;
    // A missing string anywhere, even where no pair is, and an output of another type.
    using Optional = std::optional<std::u16string>;
    const std::vector<Optional> elements = {u"/1.vk", std::nullopt};
    const auto missing = foundation::orvakdata::ArrayFactory().createArray({2, 1}, elements.begin(), elements.end());
    const auto one = makeStringColumn({u"/1.vk"});
    for (const auto& outputs : {std::vector<Array>{missing, one}, {one, missing}, {makeCharArray(u"/1.vk"), one}}) {
        host.answer = [&](const auto&) { return outputs; };
        EXPECT_THROW(resolver.which(u"f"), std::exception);
    }
}

} // namespace
} // namespace tessgen::test
