#include "standalone/Session.hpp"

#include "fl/filesystem.hpp"
#include "rux/Factory.hpp"
#include "standalone/HostArrays.hpp"
#include "standalone/services/SessionState.hpp"
#include "tests/support/SupportStores.hpp"
#include "zelt/enumeration.hpp"

#include <gtest/gtest.h>

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <typeinfo>
#include <vector>

namespace tessgen::test {
namespace {

using standalone::Session;

rux::Future<std::vector<foundation::orvakdata::Array>> start(const std::string& function) {
    return rux::Factory::getCurrentLocalRUX()->feval(function, {}, 2, {}, false, rux::RUX::createRequestID());
}

const std::string packageRoot = "orvakshared.supportpkg.getSupportPackageRoot";

TEST(Session, IsTheOnlyOneAndNeedsItsFolders) {
    const TemporaryFolder folder;
    folder.write("installation.json", "{}");
    folder.write("broken/installation.json", R"({"supportPackageRoot": "installation.json"})");
    EXPECT_THROW(fl::filesystem::get_install_path(), std::logic_error);
    EXPECT_THROW(start(packageRoot).get(), std::logic_error);
    EXPECT_THROW(Session(folder.path("broken")), std::runtime_error);
    {
        const Session session(folder.path());
        EXPECT_THROW(Session(folder.path()), std::logic_error);
        EXPECT_EQ(fl::filesystem::get_install_path(), std::filesystem::path(folder.path()).u16string());
        EXPECT_TRUE(start(packageRoot).get().at(0).isEmpty());
        try {
            start("no.such.function").get();
            ADD_FAILURE();
        } catch (const std::exception& error) { // the very object that was thrown, not what Boost would make of it
            EXPECT_TRUE(typeid(error) == typeid(std::invalid_argument));
        }
    }
    EXPECT_THROW(fl::filesystem::get_install_path(), std::logic_error);
    const Session again(folder.path());
}

// Between two questions another folder may come to lie where the root was.
TEST(Session, AsksTheRootOfTheMoment) {
    const TemporaryFolder top;
    top.write("root/a/f.vk");
    top.write("root/installation.json", R"({"searchPath": ["a"]})");
    top.write("other/a/g.vk");
    const Session session(top.path("root"));
    const auto count = [](const char16_t* name) { return standalone::currentSession().find(name).size(); };
    EXPECT_EQ(count(u"f"), 1);
    std::filesystem::rename(top.path("root"), top.path("moved"));
    EXPECT_THROW(count(u"f"), std::runtime_error);
    std::filesystem::rename(top.path("other"), top.path("root"));
    EXPECT_EQ(count(u"f"), 0);
    EXPECT_EQ(count(u"g"), 1);
}

TEST(Session, GivesEachThreadItsOwnEngine) {
    const auto mine = rux::Factory::getCurrentLocalRUX();
    EXPECT_EQ(rux::Factory::getCurrentLocalRUX(), mine);
    std::thread([&] { EXPECT_NE(rux::Factory::getCurrentLocalRUX(), mine); }).join();
    EXPECT_NE(rux::RUX::createRequestID(), rux::RUX::createRequestID());
}

TEST(Services, JoinPathsWithOneSeparator) {
    const std::pair<std::u16string, std::u16string> cases[] = {{u"/h", u"/h/lib"}, {u"/", u"/lib"}, {u"", u"lib"}};
    for (const auto& [base, expected] : cases) {
        auto joined = base;
        fl::filesystem::detail::concatenate_pathname(joined, u"lib", false);
        EXPECT_EQ(joined, expected);
    }
}

// What the library does not ask of the arrays; the tests of the gateway have the rest.
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
        omCreateZELTEnumerationMatrix(1, 2, zelt::internal::makeInterned("tessapp.internal.screener.WhichResultType")));
    EXPECT_EQ(standalone::membersOf(kinds.get()), (std::vector<std::string>{"", ""}));
    EXPECT_THROW(omSetEnumerationElement(kinds.get(), 0, zelt::internal::makeInterned("other")), std::invalid_argument);
    EXPECT_THROW(omSetEnumerationElement(kinds.get(), 2, zelt::internal::nullValue), std::out_of_range);
    EXPECT_THROW(omCreateZELTEnumerationMatrix(1, 2, zelt::internal::makeInterned("other")), std::invalid_argument);
}

} // namespace
} // namespace tessgen::test
