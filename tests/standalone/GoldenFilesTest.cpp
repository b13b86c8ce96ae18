// Files in the present version of each format, checked in: they are written to the byte. A layout that
// changes without its version fails here; with it, the files of the new version are missing.
#include "standalone/database/DatabaseWriter.hpp"
#include "standalone/index/SearchIndexFormat.hpp"
#include "standalone/store/SupportStoreFormat.hpp"
#include "tests/support/StoreDatabases.hpp"
#include "tests/support/SupportStores.hpp"

#include <filesystem>
#include <gtest/gtest.h>

namespace tessgen::standalone {
namespace {

using test::contentOf;
using test::goldenFile;
using test::TemporaryFolder;
using Kind = FileTree::Kind;

void expectSame(const std::string& made, const std::string& golden) {
    if (contentOf(made) != contentOf(golden)) {
        const auto kept = testing::TempDir() + golden.substr(golden.rfind('/') + 1);
        std::filesystem::copy_file(made, kept, std::filesystem::copy_options::overwrite_existing);
        ADD_FAILURE() << golden << " would be written otherwise now: raise the version of the format, then add "
                      << kept;
    }
}

TEST(GoldenFiles, StoreIsWrittenToTheByte) {
    const TemporaryFolder folder;
    expectSame(buildStore(folder, test::recordsOfEveryForm), goldenFile(supportStoreKind));
}

struct Folder {
    std::string path;
    FolderStamp stamp;
    bool isWorldReadable;
    std::vector<FileTree::Entry> entries; // those of packages, classes and private folders first
};

const std::vector<Folder> folders = {
    {"/", {1, 2, 3, 4, 5, 6}, true, {{"w", Kind::folder}, {"vk", Kind::file}}},
    {"/w",
     {0xFE00000000000001, 0x123456789ABCDEF0, 1'700'000'000, 999'999'999, 1'700'000'001, 1},
     true,
     {{"+p", Kind::folder},
      {"@C", Kind::link},
      {"private", Kind::folder},
      {"f.vk", Kind::file},
      {"f.vkx", Kind::link},
      {"pipe.vk", Kind::other},
      {"\xFF.vk", Kind::file}}},
    {"/w/+p", {7, 8, 9, 10, 11, 12}, false, {}},
    {"/w/@C", {13, 14, 15, 16, 17, 18}, false, {{"g.vk", Kind::file}}},
};

// Only the class folder of "/w" is recorded.
std::string belowOf(const Folder& folder) {
    const auto& [path, stamp, isWorldReadable, entries] = folders.back();
    return folder.path != "/w" ? "" : encodeFolder(stamp, isWorldReadable, entries).summary.append(noSummary);
}

TEST(GoldenFiles, IndexIsWrittenToTheByte) {
    const TemporaryFolder temporary;
    const auto path = temporary.path("search.cdb");
    AtomicFile file(path, anyFile);
    DatabaseWriter writer(file);
    for (const auto& folder : folders) {
        writer.add(folder.path,
                   encodeValue(encodeFolder(folder.stamp, folder.isWorldReadable, folder.entries), belowOf(folder)));
    }
    writer.finish(searchIndexKind, static_cast<std::uint32_t>(folders.size()), {});
    file.commit();
    expectSame(path, goldenFile(searchIndexKind));
}

} // namespace
} // namespace tessgen::standalone
