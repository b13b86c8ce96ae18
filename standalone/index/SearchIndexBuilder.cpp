#include "standalone/index/SearchIndexBuilder.hpp"

#include "standalone/database/DatabaseFile.hpp"
#include "standalone/database/DatabaseWriter.hpp"
#include "standalone/files/AtomicFile.hpp"
#include "standalone/index/SearchIndexFormat.hpp"
#include "standalone/search/SnapshotSearch.hpp"
#include "standalone/text/Hash.hpp"
#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>

namespace tessgen::standalone {

namespace {

using Clock = std::function<timespec()>;

constexpr Replaceable replaceableIndex{"a search index", "searchIndex",
                                       [](const std::string& file) { return isDatabase(file, searchIndexKind); }};

timespec systemTime() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return now;
}

struct RecordedFolder {
    std::string path;
    EncodedFolder encoded;
};

struct Recording {
    std::vector<RecordedFolder> folders;
    std::vector<std::string> leftOut; // one line for each: its path and why
    std::optional<double> wait;       // seconds until a folder that was left out can be recorded
};

// The disk, which records every folder that it lists.
class RecordingFileTree final : public FileTree {
public:
    RecordingFileTree(const std::string& index, Clock clock, Recording& recording)
        : own_(index), clock_(std::move(clock)), recording_(recording) {}

    [[nodiscard]] std::optional<std::vector<Entry>> entries(const std::string& folder,
                                                            const EntryFilter& wanted) const override {
        try {
            return record(folder, wanted);
        } catch (const std::system_error& error) {
            recording_.leftOut.push_back(folder + ": cannot be read: " + error.code().message());
            throw;
        }
    }
    [[nodiscard]] std::optional<Kind> kindOf(const std::string& path) const override { return disk_.kindOf(path); }

private:
    [[nodiscard]] std::optional<std::vector<Entry>> record(const std::string& folder, const EntryFilter& wanted) const {
        const auto now = clock_();
        FolderStatus status;
        auto found = disk_.entriesAndStatus(folder, {[](std::string_view /*name*/) { return true; }}, status);
        if (!found) {
            return std::nullopt;
        }
        const double seconds = secondsUntilChangesShow(status.inode, now);
        auto& leftOut = recording_.leftOut;
        if (own_.is(status.inode)) {
            leftOut.push_back(folder + ": changes whenever the index is written to it");
        } else if (!hasReliableTimestamps(status)) {
            leftOut.push_back(folder + ": lies on a disk whose timestamps do not show every change");
        } else if (seconds > 0) {
            leftOut.push_back(folder + ": changed just now, or has a timestamp in the future");
            constexpr double longest = 2; // else its timestamp lies in the future
            auto& wait = recording_.wait;
            wait = seconds <= longest ? std::max(wait.value_or(0), seconds) : wait;
        } else {
            recording_.folders.push_back(
                {folder, encodeFolder(stampOf(status.inode), isWorldReadable(status), *found)});
        }
        std::erase_if(*found, [&](const Entry& entry) { return !wanted.accepts(entry.name); });
        return found;
    }

    const RealFileTree disk_;
    const OwnFolder own_;
    const Clock clock_;
    Recording& recording_;
};

Recording recorded(const Installation& installation, const std::string& output, const Clock& clock) {
    Recording recording;
    const RecordingFileTree tree(output, clock, recording);
    const SnapshotSearch search(installation, tree);
    return recording;
}

using Summaries = std::unordered_map<std::string_view, std::string_view, TextHash>; // by the folders' paths

// The summaries of a folder's class and private folders.
std::string belowOf(const RecordedFolder& folder, const Summaries& summaries) {
    std::string below;
    for (std::string_view rest = folder.encoded.specialFolders; !rest.empty();) {
        if (const auto name = takeEntry(rest).value().name; isClassOrPrivate(name)) {
            const auto known = summaries.find(joinPath(folder.path, name));
            below += known == summaries.end() ? noSummary : known->second;
        }
    }
    return below;
}

IndexBuild write(Recording recording, const std::string& output) {
    AtomicFile file(output, replaceableIndex);
    DatabaseWriter writer(file);
    // What most questions read lies together.
    std::stable_partition(recording.folders.begin(), recording.folders.end(),
                          [](const RecordedFolder& folder) { return !folder.encoded.specialFolders.empty(); });
    Summaries summaries;
    for (const auto& folder : recording.folders) {
        summaries.emplace(folder.path, folder.encoded.summary);
    }
    for (const auto& folder : recording.folders) {
        writer.add(folder.path, encodeValue(folder.encoded, belowOf(folder, summaries)));
    }
    const auto count = recording.folders.size();
    writer.finish(searchIndexKind, static_cast<std::uint32_t>(count), {});
    file.commit();
    return {count, std::move(recording.leftOut)};
}

} // namespace

IndexBuild buildSearchIndex(const Installation& installation, const std::string& output) {
    requireReplaceable(output, replaceableIndex);
    auto recording = recorded(installation, output, systemTime);
    if (!recording.wait) {
        return write(std::move(recording), output);
    }
    constexpr double clockDifference = 0.02; // between the disk's clock and ours
    const double seconds = *recording.wait + clockDifference;
    recording = {}; // frees it before the wait
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    return buildSearchIndex(installation, output, systemTime);
}

IndexBuild buildSearchIndex(const Installation& installation, const std::string& output, const Clock& clock) {
    requireReplaceable(output, replaceableIndex);
    return write(recorded(installation, output, clock), output);
}

OwnFolder::OwnFolder(const std::string& file)
    : isThere_(stat(absolutePath("..", realPath(file).value_or(file)).c_str(), &status_) == 0) {}

bool OwnFolder::is(const struct stat& folder) const {
    return isThere_ && status_.st_dev == folder.st_dev && status_.st_ino == folder.st_ino;
}

} // namespace tessgen::standalone
