#include "standalone/Session.hpp"

#include "fl/filesystem.hpp"
#include "foundation/orvakdata/ArrayFactory.hpp"
#include "foundation/orvakdata/CharArray.hpp"
#include "rux/Factory.hpp"
#include "standalone/doctor/NotFound.hpp"
#include "standalone/doctor/SpellingSuggestions.hpp"
#include "tessapp/internal/screener/meta/search.hpp"
#include "tessapp/util/foundation.hpp"
#include "tessgen/datalists.hpp"
#include "tessgen/kelwhich/kelwhich.hpp"
#include "tests/support/SupportStores.hpp"

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

TEST(Session, KeepsItsSnapshot) {
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
    EXPECT_EQ(count(u"f"), 0);
    std::filesystem::rename(top.path("other"), top.path("root"));
    EXPECT_EQ(count(u"f"), 0);
    EXPECT_EQ(count(u"g"), 1);
}

TEST(Session, JoinsNamesToFoldersAsText) {
    const TemporaryFolder folder;
    folder.write("installation.json", R"({"searchPath": ["lib"]})");
    folder.write("lib/f.vk");
    const auto root = std::filesystem::path(folder.path()).u16string();
    const Session session(folder.path());
    const std::pair<std::u16string, Texts> cases[] = {
        {u"./f", {root + u"/lib/./f.vk"}}, {u"../lib/f.vk", {root + u"/lib/../lib/f.vk"}}, {u"f.vk/", {}}, {u"./", {}}};
    for (const auto& [name, paths] : cases) {
        EXPECT_EQ(textsOf(start(callWhich, {name}).get().at(0)), paths);
    }
}

// What the host's own search calls absent is an error where the library asks the disk.
TEST(Session, FailsWhereTheLibraryItselfAsksTheDisk) {
    const TemporaryFolder folder;
    folder.write("installation.json",
                 R"({"supportPackageRoot": "packages", "searchPath": ["lib"], "supportStore": "support.cdb"})");
    folder.link("lib/f.vk", "f.vk");
    folder.link("packages/lib/g.vk", "g.vk");
    folder.write("lib/g.vk");
    standalone::buildSupportStore(folder.write("records.jsonl", R"({"path": "lib/g.vk"})"), folder.path("support.cdb"),
                                  folder.path());
    const auto root = std::filesystem::path(folder.path()).u16string();
    const Session session(folder.path());
    const std::pair<std::u16string, bool> cases[] = {{u"f", false},
                                                     {root + u"/lib/f.vk", true},
                                                     {u"lib/" + std::u16string(256, u'n'), false},
                                                     {root + u"/" + std::u16string(256, u'n'), true},
                                                     {u"g", true}};
    for (const auto& [name, fails] : cases) {
        if (fails) {
            EXPECT_THROW(kelwhich::kelwhich(name), std::system_error);
        } else {
            EXPECT_TRUE(kelwhich::kelwhich(name).empty());
        }
    }
}

TEST(NotFound, SaysWhatKeepsANameFromAFile) {
    const TemporaryFolder folder;
    folder.write("installation.json", R"({"searchPath": ["lib"]})");
    for (const auto* file : {"lib/f.vk", "lib/+p/g.vk", "lib/f.txt", "lib/sub/f.vk", "lib/private/+p/h.vk",
                             "lib/+p/@C/m.vk", "lib/+p/private/h.vk", "lib/a.b.vk"}) {
        folder.write(file);
    }
    const Session session(folder.path());
    struct Case {
        std::string file;
        std::u16string name;
        std::vector<std::string> reasons;
    };
    const auto sub = folder.path("lib/sub") + " is not on the search path";
    const std::string extension = "its extension is not in the manifest";
    const Case cases[] = {
        {"lib/f.vk", u"f", {}},
        {"lib/none.vk", u"none", {"there is no such file"}},
        {"lib", u"lib", {"it is not a regular file"}},
        {"lib/f",
         u"f",
         {"there is no such file", "it has no extension", "it is not found as f: ask for " + folder.path("lib/f")}},
        {"lib/+p/g.vk", u"g", {"it is not found as g: it defines p.g"}},
        {"lib/+p/g.vk", u"p/g", {"it is not found as p/g: it defines p.g"}},
        {"lib/f.txt", u"f", {extension}},
        {"lib/f.txt", u"/lib/f", {"it is not found as /lib/f: ask for " + folder.path("lib/f.txt")}},
        {"lib/+p/@C/m.vk", u"m", {"the search does not look into the folder of the file: ask for p.C.m"}},
        {"lib/+p/private/h.vk", u"p.h", {"it is not found as p.h: ask for +p/private/h"}},
        {"lib/a.b.vk", u"a.b", {"it is not found as a.b: ask for " + folder.path("lib/a.b.vk")}},
        {"lib/private/+p/h.vk", u"p.h", {folder.path("lib/private") + " is not on the search path"}},
        {"lib/sub/f.vk", u"f", {sub}},
        {"lib/sub/f.vk", u"sub/g", {"it is not found as sub/g: ask for sub/f"}},
        {"lib/sub/+p/@C/none.txt",
         u"wave",
         {"there is no such file", extension, sub, "it is not found as wave: ask for p.C.none"}},
    };
    for (const auto& [file, name, reasons] : cases) {
        EXPECT_EQ(standalone::whyNotFound(folder.path(file), name, standalone::currentSession()).reasons, reasons)
            << file;
    }
}

TEST(SpellingSuggestions, AreTheNearestNamesUntilTheDeadline) {
    using standalone::SpellingSuggestions;
    const TemporaryFolder folder;
    folder.write("installation.json", R"({"searchPath": ["lib"], "builtins": [{"name": "waves"}]})");
    for (const auto* file : {"lib/wave.vk", "lib/ware.vk", "lib/+p/wave.vk", "lib/other.vk"}) {
        folder.write(file);
    }
    const Session session(folder.path());
    const auto& state = standalone::currentSession();
    EXPECT_EQ(SpellingSuggestions(state).similarTo("wave"), (std::vector<std::string>{"ware", "waves", "p.wave"}));
    EXPECT_TRUE(SpellingSuggestions(state, SpellingSuggestions::Clock::now()).similarTo("wave").empty());
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
