// Whether a folder stayed as it was while it was listed in several reads. Of an entry that is renamed in between, these
// may hold both names or none.
//
// Threads: one.
#pragma once

#include <ctime>
#include <optional>
#include <string>

namespace tessgen::standalone {

class ListingCheck {
public:
    // Call it before the folder is read, each time.
    void start();

    // After the folder was read: whether nothing can have changed since `start`. False, too, when the last change lies
    // within one tick of the disk's clock before `start`, since a later one may have left the same timestamp.
    // Errors: DiskError.
    [[nodiscard]] bool isUnchanged(int folder, const std::string& path);

    // After `isUnchanged` returned false: waits, for two seconds at most, until the tick of the last change is over.
    void wait() const;

private:
    timespec start_{};
    std::optional<timespec> change_; // the last one that was seen
};

} // namespace tessgen::standalone
