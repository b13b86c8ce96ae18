#include "standalone/index/SearchIndexBuilder.hpp"

#include "standalone/database/DatabaseWriter.hpp"
#include "standalone/files/AtomicFile.hpp"
#include "standalone/files/LineReader.hpp"
#include "standalone/index/SearchIndexFormat.hpp"
#include "standalone/search/SnapshotSearch.hpp"
#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

namespace tessgen::standalone {

namespace {

using Clock = std::function<timespec()>;

timespec systemTime() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return now;
}

struct RecordedFolder {
    std::string path;
    std::string value; // of its entry
};

// The disk, which keeps what it is asked to list.
class RecordingFileTree final : public FileTree {
public:
    RecordingFileTree(const std::string& index, Clock clock) : own_(index), clock_(std::move(clock)) {}

    std::optional<std::vector<Entry>> entries(const std::string& folder, const Filter& wanted) const override {
        try {
            return record(folder, wanted);
        } catch (const std::system_error& error) {
            leftOut_.push_back(folder + ": cannot be read: " + error.code().message());
            throw;
        }
    }
    std::optional<Kind> kindOf(const std::string& path) const override { return disk_.kindOf(path); }

    const std::vector<RecordedFolder>& folders() const { return folders_; }
    std::vector<std::string> takeLeftOut() { return std::move(leftOut_); }
    // How long to wait until a folder can be recorded that was left out.
    std::optional<double> wait() const { return wait_; }

private:
    std::optional<std::vector<Entry>> record(const std::string& folder, const Filter& wanted) const {
        const auto now = clock_();
        FolderStatus status;
        auto found = entriesAndStatus(
            folder, [](std::string_view /*name*/) { return true; }, &status);
        if (!found) {
            return std::nullopt;
        }
        const double seconds = secondsUntilChangesShow(status.inode, now);
        if (own_.is(status.inode)) {
            leftOut_.push_back(folder + ": changes whenever the index is written to it");
        } else if (!hasReliableTimestamps(status)) {
            leftOut_.push_back(folder + ": is on a disk whose times do not tell every change");
        } else if (seconds > 0) {
            leftOut_.push_back(folder + ": changed just now, or is from the future");
            constexpr double longest = 2; // else it is from the future
            wait_ = seconds <= longest ? std::max(wait_.value_or(0), seconds) : wait_;
        } else {
            folders_.push_back({folder, encodeFolder(stampOf(status.inode), isWorldReadable(status), *found)});
        }
        std::erase_if(*found, [&](const Entry& entry) { return !wanted(entry.name); });
        return found;
    }

    const RealFileTree disk_;
    const OwnFolder own_;
    const Clock clock_;
    mutable std::vector<RecordedFolder> folders_;
    mutable std::vector<std::string> leftOut_;
    mutable std::optional<double> wait_;
};

RecordingFileTree recorded(const Installation& installation, const std::string& output, const Clock& clock) {
    RecordingFileTree tree(output, clock);
    const SnapshotSearch search(installation, tree);
    return tree;
}

IndexBuild write(RecordingFileTree tree, const std::string& output) {
    AtomicFile file(output);
    DatabaseWriter writer(file);
    for (const auto& [path, value] : tree.folders()) {
        writer.add(path, value);
    }
    const auto count = tree.folders().size();
    writer.finish(searchIndexKind, static_cast<std::uint32_t>(count), {});
    file.commit();
    return {count, tree.takeLeftOut()};
}

// What is no index may be a file that is wanted. An index, also a damaged one or that of another version, is told by
// its magic text.
void refuseOtherFile(const std::string& output) {
    struct stat status {};
    if (stat(output.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0) {
        return;
    }
    std::string magic; // no line ends within it
    appendUnits(magic, searchIndexKind.magic);
    LineReader lines(output);
    for (auto line = lines.next(); line; line = lines.next()) {
        if (line->find(magic) != std::string_view::npos) {
            return;
        }
    }
    throw std::runtime_error(output + ": is no search index; remove it, or name another file with searchIndex");
}

} // namespace

IndexBuild buildSearchIndex(const Installation& installation, const std::string& output) {
    refuseOtherFile(output);
    double seconds = 0.02; // the disk's clock and ours need not run alike
    {
        auto tree = recorded(installation, output, systemTime);
        if (!tree.wait()) {
            return write(std::move(tree), output);
        }
        seconds += *tree.wait();
    }
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    return buildSearchIndex(installation, output, systemTime);
}

IndexBuild buildSearchIndex(const Installation& installation, const std::string& output, const Clock& clock) {
    refuseOtherFile(output);
    return write(recorded(installation, output, clock), output);
}

OwnFolder::OwnFolder(const std::string& file)
    : isThere_(stat(absolutePath("..", realPath(file).value_or(file)).c_str(), &status_) == 0) {}

bool OwnFolder::is(const struct stat& folder) const {
    return isThere_ && status_.st_dev == folder.st_dev && status_.st_ino == folder.st_ino;
}

} // namespace tessgen::standalone
