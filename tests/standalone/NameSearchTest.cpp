#include "standalone/search/NameSearch.hpp"
#include "standalone/files/BoundedFileTree.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/search/SnapshotSearch.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"
#include "tests/support/MemoryFileTree.hpp"
#include "tests/support/SupportStores.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace tessgen::standalone {
namespace {

using test::MemoryFileTree;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

// The same disk on the machine, and in memory with listings that name no kinds.
class MemoryDisk {
public:
    MemoryDisk() { tree.hideKinds(); }
    static std::string path(const std::string& below) { return "/disk/" + below; }
    void file(const std::string& below) { tree.add(path(below), FileTree::Kind::file); }
    void folder(const std::string& below) { tree.add(path(below), FileTree::Kind::folder); }
    void pipe(const std::string& below) { tree.add(path(below), FileTree::Kind::other); }
    void link(const std::string& below, const std::string& target) { tree.link(path(below), target); }
    MemoryFileTree tree;
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
        for (const char* folder :
             {"one", "absent", "notes.txt", "notes.txt/below", "two/pipe.vk", "two/@loop", "two"}) {
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
            "one/+signal/high.vk two/+signal/high.vk two/lost.vk/inner.txt two/table.vk "
            "one/@a.b/dotted.vk one/+a.b/dotted.vk one/+\xFF/dotted.vk";
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
        disk.link("one/+signal/far.vk", "../wave.vk");
        disk.link("two/+bound", "../one/+signal");
        disk.link("two/+again", "../two");
        disk.link("two/device.vk", "/dev/null");
        disk.folder("one/folder.vk");
        disk.file("two/" + longest + ".vk");
    }

    // What a look-up answers, and one in a snapshot as well: each place as "line" or "line|partner", files relative to
    // the disk.
    Strings find(std::u16string_view name) {
        auto found = shown(NameSearch(installation, disk.tree).find(name));
        EXPECT_EQ(shown(SnapshotSearch(installation, disk.tree).find(name)), found) << testing::PrintToString(name);
        return found;
    }
    Strings shown(const std::vector<FoundPlace>& places) {
        Strings found;
        for (const FoundPlace& place : places) {
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

using Disks = testing::Types<MemoryDisk, RealDisk>;
TYPED_TEST_SUITE(NameSearchContract, Disks, );

TYPED_TEST(NameSearchContract, FindsEveryPlaceInOrder) {
    const std::vector<std::pair<std::u16string, Strings>> cases = {
        {u"wave",
         {"one/@wave/wave.vk", "one/wave.vkx", "one/wave.vk", "one/@/wave.vk", "one/@Zed/wave.vk",
          "one/@alpha/wave.vkx", "one/@alpha/wave.vk", "one/private/wave.vk", "two/wave.vkx"}},
        {u"own", {"one/private/own.vk"}},
        {u"dotted", {"one/@a.b/dotted.vk"}},
        {u"deep", {"one/@\xF0\x9F\x98\x80/deep.vk", "one/@\xEE\x80\x80/deep.vk"}}, // by code units, not by bytes
        {u"high", {"one/@signal/high.vkx", "two/@linked/high.vkx"}},
        {u"signal.far", {"one/+signal/far.vk"}},
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
        " . / sum. .sum a.sum a.b.dotted signal..high missing Wave signal.missing.low lost pipe loop dangling "
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

TYPED_TEST(NameSearchContract, TakesAnAbsoluteNameAsItIs) {
    const std::string file = this->disk.path("two/lost.vk/inner.txt");
    const auto name = toUTF16(file).value();
    EXPECT_THAT(this->find(name), ElementsAre("two/lost.vk/inner.txt"));
    EXPECT_THAT(this->find(name + std::u16string(u"\0x", 2)), IsEmpty()); // a NUL does not end a path
    EXPECT_THAT(this->find(toUTF16(this->disk.path("one/sub/wave")).value()), ElementsAre("one/sub/wave"));
    EXPECT_THAT(this->find(toUTF16(this->disk.path("two/linked")).value()), IsEmpty()); // nothing is appended
}

class Snapshots : public NameSearchContract<MemoryDisk> {};

// Whatever could not be read when a snapshot was taken, and also when the disk is gone.
TEST_F(Snapshots, AnswerAndFailAsTheLookUpDidWhenTheyWereTaken) {
    const auto names =
        split("wave own deep high low dotted linked turned table missing wave.wave alpha.wave signal.far signal.high "
              "signal.low signal.filter.low bound.high bound.filter.low again.linked again.again.linked "
              "private/own sub/wave +signal/high.vk",
              ' ');
    std::size_t failures = 0;
    for (const bool areKindsHidden : {true, false}) {
        disk.tree.hideKinds(areKindsHidden);
        for (const auto& [unreadable, kind] : disk.tree.kinds()) {
            if (kind == FileTree::Kind::file && !areKindsHidden) {
                continue; // to a snapshot, it is what its folder lists
            }
            disk.tree.fail(unreadable, EIO);
            const SnapshotSearch snapshot(installation, disk.tree);
            Strings before;
            for (const auto& name : names) {
                before.push_back(test::outcome(NameSearch(installation, disk.tree), name));
                EXPECT_EQ(test::outcome(snapshot, name), before.back()) << unreadable << ", " << name;
                failures += before.back().starts_with("error: ") ? 1U : 0U;
            }
            for (const auto& [path, ignored] : disk.tree.kinds()) {
                disk.tree.fail(path, ENODEV);
            }
            for (std::size_t i = 0; i < names.size(); ++i) {
                EXPECT_EQ(test::outcome(snapshot, names[i]), before[i]) << unreadable << ", gone, " << names[i];
            }
            disk.tree.mend();
        }
    }
    EXPECT_GT(failures, 100U);
}

TEST(NameSearch, FindsAFileThatIsGoneSinceItWasListed) {
    MemoryFileTree tree("/w", {"f.vk"});
    tree.link("/w/f.vkx", "f.vk"); // of a link that is gone, nobody knows where it led
    Installation installation;
    installation.searchPath = {"/w"};
    installation.extensions = {"vk", "vkx"};
    int asked = 0;
    const BoundedFileTree listedOnly(tree, [&asked] { return ++asked <= 3; }); // one listing of two entries
    EXPECT_EQ(NameSearch(installation, listedOnly).find(u"f").size(), 1);
}

TEST(NameSearch, FailsForTheNamesThatNeedWhatCannotBeRead) {
    MemoryFileTree tree("/w", {"f.vk", "@C/f.vk", "+p/f.vk", "sub/f.vk"});
    tree.fail("/w/@C", EIO);
    Installation installation;
    installation.searchPath = {"/w"};
    installation.extensions = {"vk"};
    for (const char16_t* name : {u"f", u"g", u"C.f", u"p.f", u"sub/f", u"/w/f.vk"}) {
        const bool fails = name[1] == u'\0' || name[0] == u'C';
        EXPECT_EQ(test::errorOf([&] { EXPECT_EQ(NameSearch(installation, tree).find(name).size(), 1); }),
                  fails ? "/w/@C: Input/output error" : "no error");
    }
}

TEST(SnapshotSearch, HasEverySymbolOnce) {
    const MemoryFileTree tree(
        "/w", {"f.vk", "f.vkx", "@C/C.vk", "@C/g.vk", "+p/@D/D.vk", "+p/@D/h.vk", "private/k.vk", "@c.d/m.vk"});
    Installation world;
    world.searchPath = {"/w", "/w"};
    world.extensions = {"vkx", "vk"};
    auto symbols = SnapshotSearch(world, tree).symbols();
    std::sort(symbols.begin(), symbols.end());
    EXPECT_EQ(symbols, split("C C.C C.g f g k m p.D p.D.D p.D.h", ' '));
}

} // namespace
} // namespace tessgen::standalone
