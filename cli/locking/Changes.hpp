// What changed between two locks: compares them, and prints the changes.
#pragma once

#include "analysis/LockChanges.hpp"
#include "cli/locking/Lock.hpp"
#include "cli/reports/Report.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

struct NameChanges {
    analysis::LockedName before; // paths as in the locks
    analysis::LockedName after;
    std::vector<analysis::Change> changes; // not empty; the path of a finding is absolute if `after` is an installation
    std::size_t line = 0;                  // of the name in the lock's file of `after`; 0 without one
};

// Of every name but those that failed in one of the locks, in the order of the names' bytes.
std::vector<NameChanges> changesBetween(const Lock& before, const Lock& after);

// For people: the name and the code, then the candidates before and after; empty when nothing changed.
std::string asText(const std::vector<NameChanges>& names);

// One document: {"schema":"kelwhich/1","before":...,"after":...,"names":[...]}.
std::string asJSON(const std::vector<NameChanges>& names, const Lock& before, const Lock& after);

// `command` is "diff" or "lock". A change is placed at the candidate after it, or at the name's line in the lock.
Report reportOn(const std::vector<NameChanges>& names, std::string_view command, const Lock& before, const Lock& after);

} // namespace tessgen::cli
