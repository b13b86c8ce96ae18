#include "standalone/index/InstallationDisk.hpp"

#include <stdexcept>

namespace tessgen::standalone {

bool isIndexBuilt(const Installation& installation) {
    const auto& file = installation.searchIndex;
    return file && RealFileTree().kindOf(*file);
}

InstallationDisk::InstallationDisk(const Installation& installation, const std::optional<SearchIndex>& index)
    : installation_(installation), top_(installation.root), now_(&top_),
      files_(index ? &*index : nullptr, now_, &top_) {}

void InstallationDisk::requireSameRoot() const {
    if (!top_.isAtItsPath()) {
        requireFolder(installation_, "root", installation_.root);
        throw std::runtime_error(installation_.manifest + ": key \"root\": another folder took the place of "
                                 + installation_.root + ": try again");
    }
}

} // namespace tessgen::standalone
