#include "standalone/search/NameSearch.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"
#include "tests/support/MemoryFileTree.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tessgen::standalone {
namespace {

using test::MemoryFileTree;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

template <typename Call>
std::string errorOf(Call call) {
    try {
        call();
        return "";
    } catch (const std::system_error& error) {
        return error.what();
    }
}

// The same disk twice: as the fake has it and as the machine has it.
class MemoryDisk {
public:
    static std::string path(const std::string& below) { return "/disk/" + below; }
    void file(const std::string& below) { tree.add(path(below), FileTree::Kind::file); }
    void folder(const std::string& below) { tree.add(path(below), FileTree::Kind::folder); }
    void pipe(const std::string& below) { tree.add(path(below), FileTree::Kind::other); }
    void link(const std::string& below, const std::string& target) { tree.link(path(below), target); }
    MemoryFileTree tree;
};

class UntellingMemoryDisk : public MemoryDisk {
public:
    UntellingMemoryDisk() { tree.hideKinds(); }
};

class RealDisk {
public:
    std::string path(const std::string& below) const { return top_.path(below); }
    void file(const std::string& below) { top_.write(below); }
    void folder(const std::string& below) { top_.makeFolder(below); }
    void pipe(const std::string& below) const { ASSERT_EQ(mkfifo(path(below).c_str(), 0600), 0); }
    void link(const std::string& below, const std::string& target) { top_.link(below, target); }
    RealFileTree tree;

private:
    TemporaryFolder top_;
};

template <typename Disk>
class NameSearchContract : public testing::Test {
protected:
    NameSearchContract() {
        for (const char* folder : {"one", "absent", "notes.txt", "two"}) {
            installation.searchPath.push_back(disk.path(folder));
        }
        installation.extensions = {"vkx", "vk"};
        installation.builtins = {{u"rows", u"table", false},
                                 {u"table", u"table", true},
                                 {u"table", u"", false},
                                 {u"sum", u"", false},
                                 {u"a.sum", u"", false}};
        const std::string files =
            "notes.txt one/wave.vk one/wave.vkx one/wave.txt one/wave one/sub/wave one/sub/wave.vk "
            "one/@wave/wave.vk one/@alpha/wave.vk one/@alpha/wave.vkx one/@Zed/wave.vk one/@/wave.vk "
            "one/@\xFF/wave.vk one/@file one/+wave/wave.vk one/private/wave.vk one/private/own.vk "
            "one/private/private/own.vk two/wave.vkx one/@\xF0\x9F\x98\x80/deep.vk "
            "one/@\xEE\x80\x80/deep.vk one/+signal/+filter/@low/low.vk one/+signal/+filter/low.vk "
            "one/+signal/+filter/private/low.vk one/+signal/@filter/low.vk one/@signal/high.vkx "
            "one/+signal/high.vk two/+signal/high.vk two/lost.vk/inner.txt two/table.vk";
        for (const std::string& file : split(files, ' ')) {
            disk.file(file);
        }
        disk.pipe("two/pipe.vk");
        disk.link("two/linked.vk", "../one/wave");
        disk.link("two/loop.vk", "loop.vk");
        disk.link("two/dangling.vk", "nowhere");
        disk.link("two/turned.vk", "../one/sub");
        disk.link("two/@loop", "@loop");
        disk.link("two/@dangling", "nowhere");
        disk.link("two/@linked", disk.path("one/@signal"));
        disk.link("two/+bound", "../one/+signal");
        disk.link("two/+again", "../two");
        disk.link("two/device.vk", "/dev/null");
        disk.folder("one/folder.vk");
        disk.file("two/" + longest + ".vk");
    }

    // Each place as "line" or "line|partner", files relative to the disk.
    Strings find(std::u16string_view name) {
        Strings found;
        for (const FoundPlace& place : NameSearch(installation, disk.tree).find(name)) {
            std::string line = toUTF8(place.line).value();
            if (line.starts_with(disk.path(""))) {
                line.erase(0, disk.path("").size());
            }
            found.push_back(line + (place.partner.empty() ? "" : "|" + toUTF8(place.partner).value()));
        }
        return found;
    }

    const std::string longest = std::string(252, 'n'); // with the extension as long as a name can be
    Disk disk;
    Installation installation;
};

using Disks = testing::Types<MemoryDisk, UntellingMemoryDisk, RealDisk>;
TYPED_TEST_SUITE(NameSearchContract, Disks, );

TYPED_TEST(NameSearchContract, FindsEveryPlaceInOrder) {
    const std::vector<std::pair<std::u16string, Strings>> cases = {
        {u"wave",
         {"one/@wave/wave.vk", "one/wave.vkx", "one/wave.vk", "one/@/wave.vk", "one/@Zed/wave.vk",
          "one/@alpha/wave.vkx", "one/@alpha/wave.vk", "one/private/wave.vk", "two/wave.vkx"}},
        {u"own", {"one/private/own.vk"}},
        {u"deep", {"one/@\xF0\x9F\x98\x80/deep.vk", "one/@\xEE\x80\x80/deep.vk"}}, // by code units, not by bytes
        {u"high", {"one/@signal/high.vkx", "two/@linked/high.vkx"}},
        {u"signal.high", {"one/+signal/high.vk", "one/@signal/high.vkx", "two/+signal/high.vk"}},
        {u"signal.filter.low",
         {"one/+signal/+filter/@low/low.vk", "one/+signal/+filter/low.vk", "one/+signal/@filter/low.vk"}},
        {u"bound.filter.low",
         {"two/+bound/+filter/@low/low.vk", "two/+bound/+filter/low.vk", "two/+bound/@filter/low.vk"}},
        {u"filter.low", {}},
        {u"linked", {"two/linked.vk"}},
        {u"again.again.linked", {"two/+again/+again/linked.vk"}},
        {toUTF16(this->longest).value(), {"two/" + this->longest + ".vk"}},
        {u"sub/wave", {"one/sub/wave", "one/sub/wave.vk"}},
        {u"@alpha/wave", {"one/@alpha/wave.vkx", "one/@alpha/wave.vk"}},
        {u"+signal/@filter/low.vk", {"one/+signal/@filter/low.vk"}},
        {u"private/own.vk", {"one/private/own.vk"}},
        {u"sum", {"built-in (sum)"}},
        {u"rows", {"rows is a built-in method|table method"}},
        {u"table", {"two/table.vk", "built-in (table)", "table is a built-in method|table constructor"}},
    };
    for (const auto& [name, expected] : cases) {
        EXPECT_EQ(this->find(name), expected) << toUTF8(name).value();
    }
}

TYPED_TEST(NameSearchContract, FindsNothingWhereNothingIs) {
    const std::string names =
        " . / sum. .sum a.sum signal..high missing Wave signal.missing.low lost pipe loop dangling "
        "turned file wave.vk sub/missing sub /wave device folder folder.vk/wave again.again.missing pipe.vk/ "
        "two/pipe n"
        + this->longest + " sub/n" + this->longest;
    for (const std::string& name : split(names, ' ')) { // the empty one too
        EXPECT_THAT(this->find(toUTF16(name).value()), IsEmpty()) << name;
    }
    for (const std::u16string_view name : {u"\xD800", u"wave\xDC00", u"sub/wave\xD800"}) {
        EXPECT_THAT(this->find(name), IsEmpty()) << testing::PrintToString(name);
    }
}

TYPED_TEST(NameSearchContract, AsksForAnAbsolutePathOnce) {
    const std::string file = this->disk.path("two/lost.vk/inner.txt");
    const auto name = toUTF16(file).value();
    EXPECT_THAT(this->find(name), ElementsAre("two/lost.vk/inner.txt"));
    EXPECT_THAT(this->find(name + std::u16string(u"\0x", 2)), IsEmpty()); // a NUL does not end a path
    EXPECT_THAT(this->find(toUTF16(this->disk.path("one/sub/wave")).value()), ElementsAre("one/sub/wave"));
    EXPECT_THAT(this->find(toUTF16(this->disk.path("two/linked")).value()), IsEmpty()); // nothing is appended
}

TEST(NameSearch, ListsOnlyTheFoldersThatCanHoldTheNameAndEachOnce) {
    MemoryFileTree tree;
    for (const char* file : {"/w/f.vk", "/w/@C/g.vk", "/w/private/h.vk", "/w/+p/+q/f.vk", "/w/+p/@f/g.vk", "/x.vk"}) {
        tree.add(file, FileTree::Kind::file);
    }
    tree.link("/w/other.vk", "f.vk");
    tree.link("/w/@L", "@C");
    Installation installation;
    installation.searchPath = {"/w", "/"};
    installation.extensions = {"vk", "vkx"};
    const NameSearch search(installation, tree);
    const std::vector<std::pair<std::u16string, Strings>> cases = {
        {u"f", {"list /w", "list /w/@C", "kind /w/@L", "list /w/@L", "list /w/private", "list /"}},
        {u"p.q.f", {"list /w", "list /w/+p", "list /w/+p/+q", "list /"}},
        {u"p.f", {"list /w", "list /w/+p", "list /w/+p/@f", "list /"}},
        {u"none.f", {"list /w", "list /"}},
        {u"s/f", {"kind /w/s/f", "kind /w/s/f.vk", "kind /w/s/f.vkx", "kind /s/f", "kind /s/f.vk", "kind /s/f.vkx"}},
        {u"/w/f", {"kind /w/f"}},
        {u"p..f", {}},
        {u"f\xD800", {}},
    };
    for (const auto& [name, questions] : cases) {
        search.find(name);
        EXPECT_EQ(tree.takeQuestions(), questions) << testing::PrintToString(name);
    }
}

TEST(NameSearch, HandsOnThatAFolderCannotBeRead) {
    MemoryFileTree tree;
    tree.add("/w/@C/f.vk", FileTree::Kind::file);
    tree.fail("/w/@C", EIO);
    Installation installation;
    installation.searchPath = {"/w"};
    installation.extensions = {"vk"};
    EXPECT_EQ(errorOf([&] { NameSearch(installation, tree).find(u"f"); }), "/w/@C: Input/output error");
}

constexpr auto all = [](std::string_view) { return true; };

TEST(RealFileTree, TellsAbsentFromUnreadable) {
    const TemporaryFolder top;
    const std::string file = top.write("file");
    const std::string loop = top.link("loop", "loop");
    const RealFileTree tree;
    EXPECT_EQ(tree.entries(top.path(), all).value().size(), 2U);
    for (const std::string& absent : {std::string(), top.path("none"), file, file + "/below", loop}) {
        EXPECT_FALSE(tree.entries(absent, all)) << absent;
    }
    for (const std::string& absent : {top.path("none"), file + "/", loop, top.path(std::string(256, 'n'))}) {
        EXPECT_FALSE(tree.kindOf(absent)) << absent;
    }
}

TEST(RealFileTree, NamesWhatItMayNotRead) {
    const TemporaryFolder top;
    const std::string folder = top.makeFolder("closed");
    const RealFileTree tree;
    chmod(top.path().c_str(), 0755);
    chmod(folder.c_str(), 0);
    const uid_t user = geteuid();
    ASSERT_TRUE(user != 0 || seteuid(65534) == 0); // the superuser may read everything
    const std::string listed = errorOf([&] { tree.entries(folder, all); });
    const std::string asked = errorOf([&] { tree.kindOf(folder + "/f.vk"); });
    ASSERT_EQ(seteuid(user), 0);
    const std::string why = ": cannot be read: Permission denied; give the right to read it, or leave it out of the "
                            "installation";
    EXPECT_EQ(listed, folder + why);
    EXPECT_EQ(asked, folder + "/f.vk" + why);
}

// What no path reaches is an error: whether it is there cannot be told, or nobody could open what is answered.
TEST(RealFileTree, RefusesPathsThatAreTooLongForTheSystem) {
    const TemporaryFolder top;
    std::string folder = top.path();
    while (folder.size() < 4090) {
        const auto rest = 4090 - folder.size();
        folder += "/" + std::string(rest > 300 ? 199 : rest > 200 ? 99 : rest - 1, 'd');
    }
    const std::string below = folder.substr(top.path().size() + 1);
    top.write(below + "/f.vk"); // 4095 bytes: the longest path
    const auto previous = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    std::ofstream("g.vkx").flush();
    std::filesystem::current_path(previous);
    Installation installation;
    installation.root = top.path();
    installation.searchPath = {folder};
    installation.extensions = {"vk", "vkx"};
    const RealFileTree tree;
    const NameSearch search(installation, tree);
    EXPECT_EQ(search.find(u"f").size(), 1U);
    EXPECT_TRUE(search.find(u"h").empty());
    const std::string why = ": cannot be read: File name too long; move it to where its path is shorter";
    EXPECT_EQ(errorOf([&] { search.find(u"g"); }), folder + "/g.vkx" + why);
    EXPECT_EQ(errorOf([&] { search.find(u"g.vkx/"); }), folder + "/g.vkx/" + why);
    EXPECT_EQ(errorOf([&] { tree.entries(folder + "/@Class", all); }), folder + "/@Class" + why);
    EXPECT_EQ(errorOf([&] { realPath(folder + "/g.vkx"); }), folder + "/g.vkx" + why);
}

} // namespace
} // namespace tessgen::standalone
