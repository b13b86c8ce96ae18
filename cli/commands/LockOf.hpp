// Asks an installation for a lock.
#pragma once

#include "cli/commands/Outcome.hpp"
#include "cli/locking/Lock.hpp"
#include "cli/options/CommandLine.hpp"

#include <optional>

namespace tessgen::cli {

// The names that --from lists; nothing without --from. Rejected lines are reported and counted.
// Errors: those of LineReader.
std::optional<LockedNames> namesOfFile(const Request& request, Outcome& outcome);

// What these names, or all known ones and those of `other`, stand for in the request's installation, which is closed
// again. Names that fail are counted, and the first ten are reported.
// Errors: those of ResolverSession and `knownNames`.
Lock lockOf(const Request& request, const std::optional<LockedNames>& names, const std::optional<Lock>& other,
            Outcome& outcome);

// Prints what changed, as the request says, and returns the exit code. `command` is "diff" or "lock".
int printChanges(const Request& request, std::string_view command, const Lock& before, const Lock& after,
                 const Outcome& outcome);

} // namespace tessgen::cli
