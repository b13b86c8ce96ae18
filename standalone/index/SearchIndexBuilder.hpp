// Builds a search index: lists the folders of a search path and records the listings.
#pragma once

#include "standalone/manifest/Installation.hpp"

#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace tessgen::standalone {

struct IndexBuild {
    std::uint64_t folders = 0;        // recorded ones
    std::vector<std::string> leftOut; // one line for each other one: its path and why
};

// Lists every folder that a SnapshotSearch lists, and replaces `output` (an absolute path) atomically. When anything
// fails, `output` stays as it was. When a folder changed less than two seconds ago, waits and lists all once more.
// Left out are folders that keep changing, that have timestamps in the future, that cannot be read, that lie on a disk
// whose timestamps do not show every change, and the one that the index is written to.
// Errors: std::runtime_error with one line: `output` is another file, cannot be written, or would outgrow the 4 GiB of
// its format.
IndexBuild buildSearchIndex(const Installation& installation, const std::string& output);

// The same with another clock, and without waiting.
IndexBuild buildSearchIndex(const Installation& installation, const std::string& output,
                            const std::function<timespec()>& clock);

// The folder of `file` (an absolute path, which need not exist). Building the file changes it.
class OwnFolder {
public:
    explicit OwnFolder(const std::string& file);

    [[nodiscard]] bool is(const struct stat& folder) const;

private:
    struct stat status_ {};
    bool isThere_;
};

} // namespace tessgen::standalone
