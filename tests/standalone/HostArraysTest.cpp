#include "standalone/HostArrays.hpp"

#include "zelt/enumeration.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tessgen::test {
namespace {

using standalone::Extent;
using Texts = std::vector<std::u16string>;
using zelt::internal::makeInterned;

constexpr const char* kindClass = "tessapp.internal.screener.WhichResultType";

std::u16string textOf(const matrix::ArrayPtr& array) {
    const auto* text = matrix::detail::noninlined::qx_array_api::qxArrayToString_UTF16(array.get());
    return text == nullptr ? u"no text" : text;
}

matrix::ArrayPtr strings(const Texts& texts) {
    return String::mustBeString(matrix::create_cell(texts));
}

TEST(HostArrays, HoldTextsAsLongAsAReference) {
    {
        auto first = standalone::makeText(u"wave");
        const matrix::ArrayPtr second(matrix::to_orvak(first));
        first.reset();
        EXPECT_EQ(textOf(second), u"wave");
        EXPECT_EQ(standalone::arraysAlive(), 1U);
    }
    EXPECT_EQ(textOf(strings({u"wave"})), u"wave");
    EXPECT_EQ(textOf(strings({u"a", u"b"})), u"no text");
    EXPECT_EQ(textOf(matrix::create_cell({u"wave"})), u"no text");
    EXPECT_EQ(standalone::textsOf(strings({u"a", u"b"}).get()), (Texts{u"a", u"b"}));
    EXPECT_EQ(standalone::extentOf(strings({}).get()), (Extent{1, 0}));
    EXPECT_THROW(standalone::textsOf(matrix::create_cell({u"a"}).get()), std::invalid_argument);
    EXPECT_THROW(String::mustBeString(standalone::makeText(u"a")), std::invalid_argument);
    EXPECT_EQ(standalone::arraysAlive(), 0U);
}

TEST(HostArrays, HoldKinds) {
    {
        const matrix::ArrayPtr kinds(omCreateZELTEnumerationMatrix(1, 2, makeInterned(kindClass)));
        omSetEnumerationElement(kinds.get(), 1, makeInterned("KELPath"));
        EXPECT_EQ(standalone::membersOf(kinds.get()), (std::vector<std::string>{"", "KELPath"}));
        EXPECT_EQ(standalone::classOf(kinds.get()), kindClass);
        EXPECT_EQ(standalone::extentOf(kinds.get()), (Extent{1, 2}));
        EXPECT_THROW(omSetEnumerationElement(kinds.get(), 0, makeInterned("other")), std::invalid_argument);
        EXPECT_THROW(omSetEnumerationElement(kinds.get(), 2, zelt::internal::nullValue), std::out_of_range);
        EXPECT_THROW(omCreateZELTEnumerationMatrix(1, 2, makeInterned("other")), std::invalid_argument);
        EXPECT_EQ(makeInterned(kindClass), makeInterned(kindClass));
    }
    EXPECT_EQ(standalone::arraysAlive(), 0U);
}

} // namespace
} // namespace tessgen::test
