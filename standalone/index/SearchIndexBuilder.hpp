// Builds a search index: lists the folders of a search path and keeps what they hold.
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
    std::uint64_t folders = 0;        // that are recorded
    std::vector<std::string> leftOut; // one line for each that is not: its path and why
};

// Lists what a SnapshotSearch lists, and writes it to a new file, which then takes the place of `output` (an absolute
// path) in one rename. When anything fails, `output` is as it was. Folders that changed less than two seconds ago are
// waited for and listed again. Left out are those that keep changing, that are from the future, that cannot be read,
// that are on a disk whose times do not tell every change, and the one that the index is written to.
// Errors: std::runtime_error with one line: `output` holds something else than an index, the file cannot be written, or
// would outgrow the 4 GiB of its format.
IndexBuild buildSearchIndex(const Installation& installation, const std::string& output);

// The same at a time of one's own, without waiting.
IndexBuild buildSearchIndex(const Installation& installation, const std::string& output,
                            const std::function<timespec()>& clock);

// The folder that `file` (an absolute path; it need not be there) lies in, which a build of it changes.
class OwnFolder {
public:
    explicit OwnFolder(const std::string& file);

    bool is(const struct stat& folder) const;

private:
    struct stat status_ {};
    bool isThere_;
};

} // namespace tessgen::standalone
