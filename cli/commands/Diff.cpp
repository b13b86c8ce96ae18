#include "cli/commands/Commands.hpp"
#include "cli/commands/LockOf.hpp"
#include "cli/reports/ReportFiles.hpp"

#include <optional>
#include <string>
#include <utility>

namespace tessgen::cli {

namespace {

// The lock in a file, or of the installation there.
Lock sideOf(const std::string& file, Request request, const std::optional<LockedNames>& names, Outcome& outcome) {
    if (auto lock = readLock(file, names)) {
        return *std::move(lock);
    }
    request.installation = file;
    return lockOf(request, names, outcome);
}

} // namespace

int diff(const Request& request) {
    requireReplaceable(request.reports);
    Outcome outcome;
    const auto names = namesOfFile(request, outcome);
    const auto before = sideOf(request.operands.front(), request, names, outcome);
    const auto after = sideOf(request.operands.back(), request, names, outcome);
    return printChanges(request, "diff", before, after, outcome);
}

} // namespace tessgen::cli
