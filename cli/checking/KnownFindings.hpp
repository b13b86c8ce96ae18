// The baseline of a check: its file, which findings are known by it, and which of its lines match none.
//
// Files in it are spelled as in locks.
// Threads: one.
#pragma once

#include "analysis/Baseline.hpp"
#include "cli/checking/SourceFiles.hpp"
#include "cli/locking/LockedPaths.hpp"
#include "cli/reports/Report.hpp"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tessgen::cli {

// What was checked, so that a finding which is not there any more is stale, and not merely not looked for.
// Lifetime: the files outlive it.
struct CheckedScope {
    const SourceFiles& files;
    bool hasUses;
    bool isWhole; // nothing was skipped
    std::function<bool(const std::string& code)> isSelected;
};

class KnownFindings {
public:
    // Reads the baseline. `mayBeAbsent`: without the file, or when it is empty, nothing is known.
    // Lifetime: the session outlives it.
    // Errors: std::runtime_error: the file cannot be read, or a line of it is malformed.
    KnownFindings(const std::string& file, bool mayBeAbsent, const standalone::SessionState& session);

    // Marks the entries that the baseline lists, and adds one for each of its lines that is stale,
    // if such are selected.
    void apply(std::vector<ReportEntry>& entries, const CheckedScope& scope) const;

    // Writes a baseline of these entries, which become known unless their lines would be too long, and of what it lists
    // beyond the scope; returns how many findings it lists then.
    // Errors: those of AtomicFile.
    std::size_t update(std::vector<ReportEntry>& entries, const CheckedScope& scope);

private:
    [[nodiscard]] analysis::KnownFinding keyOf(const ReportEntry& entry) const;
    [[nodiscard]] bool isInScope(const analysis::KnownFinding& known, const CheckedScope& scope) const;
    [[nodiscard]] bool isFile(const std::u16string& path) const;
    [[nodiscard]] ReportEntry staleEntry(const analysis::KnownFinding& known, std::size_t line) const;

    std::string file_; // absolute
    LockedPaths paths_;
    const standalone::FileTree& files_;
    std::map<analysis::KnownFinding, std::size_t> known_;
};

} // namespace tessgen::cli
