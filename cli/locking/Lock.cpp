#include "cli/locking/Lock.hpp"

#include "cli/output/Escape.hpp"
#include "standalone/files/LineReader.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace tessgen::cli {

namespace {

using standalone::LineReader;

bool hasLockHead(const std::optional<std::string_view>& line) {
    return line && line->starts_with(analysis::lockHead);
}

// Nothing for a line that is too long, as that of a manifest may be.
std::optional<std::string_view> firstLine(LineReader& lines) {
    try {
        return lines.next();
    } catch (const standalone::LineTooLong&) {
        return std::nullopt;
    }
}

bool isLock(const std::string& file) {
    try {
        LineReader lines(file);
        return hasLockHead(firstLine(lines));
    } catch (const std::runtime_error&) { // it cannot be read
        return false;
    }
}

[[noreturn]] void refuseLine(const LineReader& lines, std::string_view why) {
    throw std::runtime_error(fmt::format("{} {}", lines.place(), why));
}

// Checks a line that follows the one of the name `before`.
void checkLine(const LineReader& lines, std::string_view line, std::string_view before) {
    try {
        static_cast<void>(analysis::readLockLine(line, lockSpelling));
    } catch (const std::runtime_error& error) {
        refuseLine(lines, error.what());
    }
    const auto name = analysis::nameInLine(line);
    if (name == before) {
        refuseLine(lines, fmt::format("a second line of the name {}; locks that are merged must not contradict each "
                                      "other",
                                      name));
    }
    if (name < before) {
        refuseLine(lines, "the line is not in its place; sort the file with: LC_ALL=C sort -u");
    }
}

Lock readLines(LineReader& lines, const std::string& file, const std::optional<LockedNames>& names) {
    Lock lock{file, {}, {}};
    std::string before;
    while (const auto line = lines.next()) {
        checkLine(lines, *line, before);
        before = analysis::nameInLine(*line);
        if (!names || std::binary_search(names->begin(), names->end(), before)) {
            lock.lines.emplace_back(*line);
            lock.numbers.push_back(lines.number());
        }
    }
    return lock;
}

} // namespace

const analysis::Spelling lockSpelling{escapedText, unescapedText};
const standalone::Replaceable replaceableLock{"a lock", "--output", isLock};

std::string lockFirstLine() {
    return fmt::format("{}{}\n", analysis::lockHead, analysis::lockVersion);
}

std::optional<Lock> readLock(const std::string& file, const std::optional<LockedNames>& names) {
    std::error_code unknown;
    const auto status = std::filesystem::status(file, unknown);
    const bool isAbsent = status.type() == std::filesystem::file_type::not_found && file != "-";
    if (isAbsent || std::filesystem::is_directory(status)) {
        return std::nullopt;
    }
    auto lines = LineReader::ofInput(file);
    const auto first = firstLine(lines);
    if (!hasLockHead(first)) {
        return std::nullopt;
    }
    if (first->substr(analysis::lockHead.size()) != analysis::lockVersion) {
        refuseLine(lines, "the lock is of another version of kelwhich; write it anew with: kelwhich lock -o FILE");
    }
    return readLines(lines, file, names);
}

} // namespace tessgen::cli
