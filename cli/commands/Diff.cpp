#include "cli/commands/Commands.hpp"
#include "cli/commands/LockOf.hpp"
#include "cli/reports/ReportFiles.hpp"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tessgen::cli {

namespace {

Lock lockIn(const std::string& place, Request request, const std::optional<LockedNames>& names,
            const std::optional<Lock>& other, Outcome& outcome) {
    if (place == "-") {
        throw std::runtime_error("standard input: is not a lock; write one with: kelwhich lock");
    }
    std::error_code unknown;
    if (!std::filesystem::exists(place, unknown) && !unknown) {
        throw std::runtime_error(place + ": there is no such file or folder; name a lock or an installation");
    }
    request.installation = place;
    return lockOf(request, names, other, outcome);
}

} // namespace

int diff(const Request& request) {
    requireReplaceable(request.reports);
    Outcome outcome;
    const auto names = namesOfFile(request, outcome);
    const auto& first = request.operands.front();
    const auto& last = request.operands.back();
    auto before = readLock(first, names);
    auto after = readLock(last, names);
    if (!before) {
        before = lockIn(first, request, names, after, outcome);
    }
    if (!after) {
        after = lockIn(last, request, names, before, outcome);
    }
    return printChanges(request, "diff", *before, *after, outcome);
}

} // namespace tessgen::cli
