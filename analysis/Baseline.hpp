// Findings that are known, as a text that is kept beside a program: a line for each, sorted by its bytes.
//
// The first line names the format and sorts before every other, so `sort -m -u` merges baselines. In a line, TABs
// separate the code, the name, the file that the finding is about, the other one, and of a use its file; empty fields
// at the end are left out. There are no numbers of lines: a finding stays known when a file is edited.
//   hides-supported <TAB> wave <TAB> mine/wave.vk <TAB> <root>/kel/wave.vk
// Threads: any.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>

namespace tessgen::analysis {

inline constexpr std::string_view baselineHead = "# kelwhich-baseline/1";

// The fields of a line, as its writer spells them: UTF-8 without characters below U+0020.
struct KnownFinding {
    std::string code;
    std::string name;
    std::string path;
    std::string other;
    std::string use; // empty for a definition; `unknownPlace` for a use without a file

    friend bool operator==(const KnownFinding&, const KnownFinding&) = default;
    friend bool operator<(const KnownFinding& a, const KnownFinding& b) {
        return std::tie(a.code, a.name, a.path, a.other, a.use) < std::tie(b.code, b.name, b.path, b.other, b.use);
    }
};
inline constexpr std::string_view unknownPlace = "-";

// Each finding with the number of its line, counted from 1. Lines may be unsorted, repeated or empty.
// Errors: std::runtime_error, one line: the number of a line, and what was expected there.
[[nodiscard]] std::map<KnownFinding, std::size_t> readBaseline(std::string_view text);

[[nodiscard]] std::string baselineText(const std::set<KnownFinding>& findings);

} // namespace tessgen::analysis
