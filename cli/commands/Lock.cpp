#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/commands/LockOf.hpp"
#include "cli/output/Console.hpp"
#include "cli/reports/ReportFiles.hpp"

#include <fmt/format.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tessgen::cli {

namespace {

template <typename Write>
void writeLock(const Lock& lock, const Write& write) {
    constexpr std::size_t blockSize = std::size_t{1} << 16U; // bytes per system call
    auto text = lockFirstLine();
    for (const auto& line : lock.lines) {
        text.append(line).append(1, '\n');
        if (text.size() >= blockSize) {
            write(text);
            text.clear();
        }
    }
    write(text);
}

int writeLockFile(const std::string& file, const Lock& lock, const Outcome& outcome) {
    const auto exitCode = outcome.exitCode();
    if (exitCode == exitYes) { // an incomplete lock would replace a complete one
        standalone::AtomicFile output(file, replaceableLock);
        writeLock(lock, [&output](const std::string& text) { output.append(text); });
        output.commit();
    }
    return exitCode;
}

} // namespace

int lock(const Request& request) {
    requireReplaceable(request.reports);
    if (request.output) {
        standalone::requireReplaceable(*request.output, replaceableLock);
    }
    Outcome outcome;
    const auto names = namesOfFile(request, outcome);
    const auto before = request.lockToCheck ? readLock(*request.lockToCheck, names) : std::nullopt;
    if (request.lockToCheck && !before) {
        const auto& file = *request.lockToCheck;
        std::error_code unknown;
        const bool isThere = file == "-" || std::filesystem::exists(file, unknown);
        throw std::runtime_error(fmt::format("{}: {}; write one with: kelwhich lock -o FILE", file,
                                             isThere ? "is not a lock" : "there is no such lock"));
    }
    const auto now = lockOf(request, names, before, outcome);
    if (before) {
        return printChanges(request, "lock", *before, now, outcome);
    }
    if (request.output) {
        return writeLockFile(*request.output, now, outcome);
    }
    writeLock(now, writeOut);
    noteOnName(request);
    return outcome.exitCode();
}

} // namespace tessgen::cli
