#include "standalone/Session.hpp"

#include "fl/filesystem.hpp"
#include "foundation/orvakdata/ArrayFactory.hpp"
#include "foundation/orvakdata/CharArray.hpp"
#include "rux/Factory.hpp"
#include "tessapp/internal/screener/meta/search.hpp"
#include "tessapp/util/foundation.hpp"
#include "tessgen/datalists.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace tessgen::test {
namespace {

using foundation::orvakdata::Array;
using standalone::Session;
using Outputs = std::vector<Array>;
using Texts = std::vector<std::u16string>;

rux::Future<Outputs> start(const std::string& function, const Texts& arguments) {
    Outputs arrays;
    if (!arguments.empty()) {
        arrays.push_back(foundation::orvakdata::ArrayFactory().createArray({arguments.size(), 1}, arguments.begin(),
                                                                           arguments.end()));
    }
    return rux::Factory::getCurrentLocalRUX()->feval(function, arrays, 2, {}, false, rux::RUX::createRequestID());
}

Texts textsOf(const Array& array) {
    const foundation::orvakdata::StringArray strings(array);
    Texts texts;
    for (auto it = strings.begin(); !it.isEqual(strings.end()); it.increment()) {
        texts.push_back(it.getRef());
    }
    return texts;
}

const std::string callWhich = "tessapp.internal.screener.resolver.callWhichString";
const std::string packageRoot = "orvakshared.supportpkg.getSupportPackageRoot";

TEST(Session, AnswersTheHostsServicesFromItsManifest) {
    const TemporaryFolder folder;
    folder.write("installation.json", R"({"supportPackageRoot": "packages", "searchPath": ["lib"], "kelPath": ["kel/"],
        "sourceCode": ["lib/base", "."], "builtins": [{"name": "f"}, {"name": "f", "class": "table"}]})");
    folder.write("lib/f.vk", "");
    folder.makeFolder("packages");
    const auto root = std::filesystem::path(folder.path()).u16string();
    const Session session(folder.path());

    EXPECT_EQ(fl::filesystem::get_install_path(), root);
    EXPECT_EQ(datalists::kelPathFolders(), Texts{root + u"/kel/"});
    EXPECT_EQ(tessapp::util::foundation::getORVAKSourceCodeDirs(), (std::vector<Texts>{{u"lib", u"base"}, {}}));
    EXPECT_EQ(tessapp::internal::screener::meta::searchByPath(root + u"/lib/f.vk"), std::nullopt);
    EXPECT_TRUE(tessapp::internal::screener::meta::searchBySymbol(u"f").empty());
    EXPECT_EQ(foundation::orvakdata::CharArray(start(packageRoot, {}).get().at(0)).toUTF16(), root + u"/packages");
    const auto outputs = start(callWhich, {u"f"}).get();
    ASSERT_EQ(outputs.size(), 2U);
    EXPECT_EQ(textsOf(outputs[0]), (Texts{root + u"/lib/f.vk", u"built-in (f)", u"f is a built-in method"}));
    EXPECT_EQ(textsOf(outputs[1]), (Texts{u"", u"", u"table method"}));
}

TEST(Session, KeepsItsViewWhenThatIsFixed) {
    const TemporaryFolder folder;
    folder.write("installation.json", R"({"searchPath": ["lib"]})");
    folder.makeFolder("lib/sub");
    for (const auto view : {standalone::View::live, standalone::View::snapshot}) {
        const Session session(folder.path(), view);
        EXPECT_EQ(textsOf(start(callWhich, {u"f"}).get().at(0)), Texts());
        const auto file = std::filesystem::path(folder.write("lib/f.vk", ""));
        EXPECT_EQ(textsOf(start(callWhich, {u"f"}).get().at(0)),
                  view == standalone::View::live ? Texts{file.u16string()} : Texts());
        std::filesystem::remove(file);
    }
}

TEST(Session, IsTheOnlyOneAndNeedsItsFolders) {
    const TemporaryFolder folder;
    folder.write("installation.json", "{}");
    folder.write("broken/installation.json", R"({"root": "none"})");
    folder.write("broken2/installation.json", R"({"supportPackageRoot": "installation.json"})");
    EXPECT_THROW(fl::filesystem::get_install_path(), std::logic_error);
    EXPECT_THROW(start(packageRoot, {}).get(), std::logic_error);
    for (const char* broken : {"/broken", "/broken2"}) {
        EXPECT_THROW(Session(folder.path() + broken), std::runtime_error);
    }
    {
        const Session session(folder.path());
        EXPECT_THROW(Session(folder.path()), std::logic_error);
        EXPECT_EQ(fl::filesystem::get_install_path(), std::filesystem::path(folder.path()).u16string());
        EXPECT_TRUE(start(packageRoot, {}).get().at(0).isEmpty());
    }
    EXPECT_THROW(fl::filesystem::get_install_path(), std::logic_error);
    const Session again(folder.path());
}

// An error of an evaluation is stored in the future, and arrives as the very object that was thrown.
TEST(Session, HandsAnEvaluationsErrorOnThroughTheFuture) {
    const TemporaryFolder folder;
    folder.write("installation.json", R"({"searchPath": ["lib"]})");
    const Session session(folder.path());
    EXPECT_THROW(start("no.such.function", {}).get(), std::invalid_argument);
    EXPECT_THROW(start(callWhich, {}).get(), std::exception);

    auto future = start("no.such.function", {}).share();
    std::exception_ptr caught[2];
    for (auto& each : caught) {
        try {
            future.get();
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), "the stand-alone host has no function no.such.function");
            each = std::current_exception();
        }
    }
    EXPECT_NE(caught[0], nullptr);
    EXPECT_EQ(caught[0], caught[1]);
}

TEST(Session, GivesEachThreadItsOwnEngine) {
    const auto mine = rux::Factory::getCurrentLocalRUX();
    EXPECT_EQ(rux::Factory::getCurrentLocalRUX(), mine);
    std::shared_ptr<rux::RUX> other;
    std::thread([&] { other = rux::Factory::getCurrentLocalRUX(); }).join();
    EXPECT_NE(other, mine);
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

} // namespace
} // namespace tessgen::test
