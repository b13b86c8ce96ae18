#include "analysis/Baseline.hpp"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace tessgen::analysis {

namespace {

constexpr std::size_t fewestFields = 2;

[[noreturn]] void refuse(std::size_t number, const std::string& expected) {
    throw std::runtime_error("line " + std::to_string(number) + ": expected " + expected);
}

// Takes what is before the next `separator` off the beginning of `text`.
std::string_view takeUntil(char separator, std::string_view& text) {
    const auto end = std::min(text.find(separator), text.size());
    const auto taken = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return taken;
}

KnownFinding readLine(std::string_view line, std::size_t number) {
    KnownFinding known;
    std::size_t count = 0;
    for (auto* const field : {&known.code, &known.name, &known.path, &known.other, &known.use}) {
        count += line.empty() ? 0U : 1U;
        *field = takeUntil('\t', line);
    }
    if (count < fewestFields || !line.empty()) {
        refuse(number, "two to five fields, separated by TABs: code, name, file, other file, file of the use");
    }
    return known;
}

} // namespace

std::map<KnownFinding, std::size_t> readBaseline(std::string_view text) {
    std::map<KnownFinding, std::size_t> findings;
    for (std::size_t number = 1; number == 1 || !text.empty(); ++number) {
        const auto line = takeUntil('\n', text);
        if (number == 1 && line != baselineHead) {
            refuse(number, std::string(baselineHead) + ", the first line of a baseline of this version");
        }
        if (!line.empty() && line != baselineHead) {
            findings.emplace(readLine(line, number), number);
        }
    }
    return findings;
}

std::string baselineText(const std::set<KnownFinding>& findings) {
    std::vector<std::string> lines;
    for (const auto& [code, name, path, other, use] : findings) {
        auto line = code;
        for (const auto* const field : {&name, &path, &other, &use}) {
            line.append("\t").append(*field);
        }
        lines.push_back(line.substr(0, line.find_last_not_of('\t') + 1));
    }
    std::sort(lines.begin(), lines.end());
    std::string text(baselineHead);
    for (const auto& line : lines) {
        text.append("\n").append(line);
    }
    return text + "\n";
}

} // namespace tessgen::analysis
