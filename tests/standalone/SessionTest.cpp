#include "standalone/Session.hpp"

#include "fl/filesystem.hpp"
#include "rux/Factory.hpp"
#include "standalone/doctor/NotFound.hpp"
#include "standalone/services/SessionState.hpp"
#include "tests/support/SupportStores.hpp"

#include <gtest/gtest.h>

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
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
    folder.write("broken/installation.json", R"({"root": "none"})");
    folder.write("broken2/installation.json", R"({"supportPackageRoot": "installation.json"})");
    EXPECT_THROW(fl::filesystem::get_install_path(), std::logic_error);
    EXPECT_THROW(start(packageRoot).get(), std::logic_error);
    for (const char* broken : {"/broken", "/broken2"}) {
        EXPECT_THROW(Session(folder.path() + broken), std::runtime_error);
    }
    {
        const Session session(folder.path());
        EXPECT_THROW(Session(folder.path()), std::logic_error);
        EXPECT_EQ(fl::filesystem::get_install_path(), std::filesystem::path(folder.path()).u16string());
        EXPECT_TRUE(start(packageRoot).get().at(0).isEmpty());
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

TEST(Session, CountsUnsavedFilesInTheViewsOfTheMoment) {
    const TemporaryFolder folder;
    folder.write("installation.json", R"({"searchPath": ["a", "linked"]})");
    folder.makeFolder("a");
    folder.link("linked", "a"); // which is not watched
    for (const auto view : {standalone::View::live, standalone::View::watched}) {
        const Session session(folder.path(), view);
        const auto& state = standalone::currentSession();
        state.setOverlay({folder.path("a/+p/new.vk")});
        EXPECT_EQ(state.find(u"p.new").size(), 1);
        EXPECT_EQ(state.symbols(), std::vector<std::string>{"p.new"});
        state.setOverlay({});
        EXPECT_EQ(state.find(u"p.new").size(), 0);
    }
}

TEST(NotFound, SaysWhatKeepsANameFromAFile) {
    const TemporaryFolder folder;
    folder.write("installation.json", R"({"searchPath": ["lib"]})");
    for (const auto* file : {"lib/f.vk", "lib/+p/g.vk", "lib/f.txt", "lib/sub/f.vk", "lib/private/+p/h.vk",
                             "lib/+p/@C/m.vk", "lib/a.b.vk"}) {
        folder.write(file);
    }
    std::filesystem::create_symlink("nowhere", folder.path("lib/l.vk"));
    const Session session(folder.path());
    const auto cases = rowsOf(R"(lib/f.vk f =>
lib/l.vk l => it is a link that leads nowhere;
lib lib => it is not a regular file;
lib/f f => there is no such file; it has no extension; it is not found as f: ask for /lib/f;
lib/+p/g.vk p/g => it is not found as p/g: it defines p.g;
lib/f.txt /lib/f => it is not found as /lib/f: ask for /lib/f.txt;
lib/+p/@C/m.vk m => the search does not look into the folder of the file: ask for p.C.m;
lib/a.b.vk a.b => it is not found as a.b: ask for /lib/a.b.vk;
lib/private/+p/h.vk p.h => /lib/private is not on the search path;
lib/sub/f.vk sub/g => it is not found as sub/g: ask for sub/f;)");
    for (const auto& [fileAndName, expected] : cases) {
        const auto space = fileAndName.find(' ');
        const auto file = folder.path(fileAndName.substr(0, space));
        const auto name = standalone::toUTF16(fileAndName.substr(space + 1)).value();
        std::string reasons;
        for (const auto& reason : standalone::whyNotFound(file, name, standalone::currentSession()).reasons) {
            reasons += (reasons.empty() ? "" : " ") + reason + ";";
        }
        for (auto at = reasons.find(folder.path()); at != std::string::npos; at = reasons.find(folder.path())) {
            reasons.erase(at, folder.path().size());
        }
        EXPECT_EQ(reasons, expected) << fileAndName;
    }
}

// An error of an evaluation is stored in the future, and arrives as the very object that was thrown.
TEST(Session, HandsAnEvaluationsErrorOnThroughTheFuture) {
    const TemporaryFolder folder;
    folder.write("installation.json", R"({"searchPath": ["lib"]})");
    const Session session(folder.path());
    EXPECT_THROW(start("tessapp.internal.screener.resolver.callWhichString").get(), std::exception);

    auto future = start("no.such.function").share();
    const auto caught = [&future] {
        try {
            future.get();
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), "the stand-alone host has no function no.such.function");
            return std::current_exception();
        }
        return std::exception_ptr();
    };
    const auto first = caught();
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(first, caught());
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

} // namespace
} // namespace tessgen::test
