// What the library does not ask of the arrays; the tests of the gateway have the rest.
#include "standalone/HostArrays.hpp"

#include "zelt/enumeration.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tessgen::test {
namespace {

using zelt::internal::makeInterned;

TEST(HostArrays, AreReadAsWhatTheyAre) {
    const auto strings = [](const std::vector<std::u16string>& texts) {
        return String::mustBeString(matrix::create_cell(texts));
    };
    const auto textOf = [](const matrix::ArrayPtr& array) {
        return matrix::detail::noninlined::qx_array_api::qxArrayToString_UTF16(array.get());
    };
    const auto one = strings({u"wave"});
    EXPECT_EQ(textOf(one), std::u16string(u"wave"));
    EXPECT_EQ(textOf(strings({u"a", u"b"})), nullptr);
    EXPECT_EQ(standalone::extentOf(strings({}).get()), (standalone::Extent{1, 0}));
    EXPECT_THROW(standalone::textsOf(matrix::create_cell({u"a"}).get()), std::invalid_argument);
    EXPECT_THROW(String::mustBeString(standalone::makeText(u"a")), std::invalid_argument);
}

TEST(HostArrays, HoldOnlyKinds) {
    const matrix::ArrayPtr kinds(
        omCreateZELTEnumerationMatrix(1, 2, makeInterned("tessapp.internal.screener.WhichResultType")));
    EXPECT_EQ(standalone::membersOf(kinds.get()), (std::vector<std::string>{"", ""}));
    EXPECT_THROW(omSetEnumerationElement(kinds.get(), 0, makeInterned("other")), std::invalid_argument);
    EXPECT_THROW(omSetEnumerationElement(kinds.get(), 2, zelt::internal::nullValue), std::out_of_range);
    EXPECT_THROW(omCreateZELTEnumerationMatrix(1, 2, makeInterned("other")), std::invalid_argument);
}

} // namespace
} // namespace tessgen::test
