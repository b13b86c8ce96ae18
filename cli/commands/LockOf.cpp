#include "cli/commands/LockOf.hpp"

#include "analysis/Answer.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/locking/Changes.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/reports/ReportFiles.hpp"
#include "standalone/doctor/KnownNames.hpp"
#include "standalone/files/LineReader.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

namespace tessgen::cli {

namespace {

using standalone::LineReader;

// The line of a name; empty when it has no candidate.
std::string lineOf(const std::u16string& name, const ResolverSession& resolver, const LockedPaths& paths) {
    auto locked = analysis::lockedName(resolver->explain(name),
                                       [&](const auto& candidate) { return resolver.isMissing(candidate); });
    for (auto& candidate : locked.candidates) {
        candidate.path = analysis::isFile(candidate.kind) ? paths.shortened(candidate.path) : candidate.path;
    }
    auto line = locked.candidates.empty() ? "" : analysis::lockLine(locked, lockSpelling);
    if (line.size() > LineReader::longestLine) {
        throw std::runtime_error("its line in a lock would be longer than 1 MiB");
    }
    return line;
}

void sortEachOnce(LockedNames& names) {
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
}

// The known names, and those of a lock, which may be known no longer and still stand for something.
LockedNames allNames(const standalone::SessionState& session, const std::optional<Lock>& other) {
    LockedNames names;
    for (const auto& name : standalone::knownNames(session)) {
        names.push_back(analysis::spelledName(parseName(name), lockSpelling));
    }
    for (const auto& line : other ? other->lines : std::vector<std::string>()) {
        names.push_back(analysis::spelledName(unescapedText(analysis::nameInLine(line)).value(), lockSpelling));
    }
    sortEachOnce(names);
    return names;
}

} // namespace

std::optional<LockedNames> namesOfFile(const Request& request, Outcome& outcome) {
    if (!request.from) {
        return std::nullopt;
    }
    auto lines = LineReader::ofInput(*request.from, request.null ? '\0' : '\n');
    LockedNames names;
    standalone::forEachLine(
        lines, [&](std::string_view line) { names.push_back(analysis::spelledName(parseName(line), lockSpelling)); },
        [&](const char* reason) {
            reportErrorInLine(lines.place(), reason);
            outcome.addFailure();
        });
    sortEachOnce(names);
    return names;
}

Lock lockOf(const Request& request, const std::optional<LockedNames>& names, const std::optional<Lock>& other,
            Outcome& outcome) {
    ResolverSession resolver(request, standalone::View::snapshot);
    const auto& session = standalone::currentSession();
    const LockedPaths paths(session);
    Lock lock{session.installation.manifest, {}, {}, paths};
    const auto add = [&](const std::u16string& name, const std::string& spelled) {
        try {
            auto line = lineOf(name, resolver, paths);
            resolver.boundCache(line.size());
            outcome.addAnswer(spelled, true);
            if (!line.empty()) {
                lock.lines.push_back(std::move(line));
            }
        } catch (const std::exception& error) {
            constexpr std::size_t mostReported = 10; // a folder that cannot be read fails nearly every name
            if (lock.failed.size() < mostReported) {
                outcome.addFailure(inUTF8(name), error);
            } else {
                outcome.addFailure();
            }
            lock.failed.push_back(spelled);
        }
    };
    const auto all = names ? LockedNames() : allNames(session, other);
    for (const auto& name : names ? *names : all) {
        add(unescapedText(name).value(), name);
    }
    if (!names) {
        if (session.snapshotSearch->hasUnreadable()) {
            outcome.setIncomplete("folders that cannot be read may hold more names; find them with: kelwhich doctor");
        } else if (!session.snapshotSearch->isComplete()) {
            reportNote("packages behind several links may hold more names");
        }
    }
    resolver.close();
    return lock;
}

int printChanges(const Request& request, std::string_view command, const Lock& before, const Lock& after,
                 const Outcome& outcome) {
    const auto names = changesBetween(before, after);
    auto text = request.json ? asJSON(names, before, after) : asText(names);
    if (!request.reports.empty()) {
        text = withReports(std::move(text), request.reports, reportOn(names, command, before, after));
    }
    writeOut(text);
    const auto exitCode = outcome.exitCode();
    if (exitCode != exitYes || names.empty()) {
        return exitCode;
    }
    reportError(names.size() == 1 ? "1 name differs" : fmt::format("{} names differ", names.size()));
    return exitNo;
}

} // namespace tessgen::cli
