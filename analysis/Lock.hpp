// What a name stands for, as a line of a lock: a text that is kept beside programs, in which the lines are sorted by
// their bytes, each name has one, and a name without a candidate has none.
//
// The first line names the format and sorts before every other, so `sort -m -u` merges the locks of different names.
// In a line, TABs separate the name, and of each candidate the path, the kind, the verdicts and the key that puts it
// before the next one:
//   wave <TAB> mine/wave.vk <TAB> ORVAKPath <TAB> user <TAB> by user <TAB> kel/wave.vk <TAB> KELPath <TAB> supported
// Threads: any.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::analysis {

inline constexpr std::string_view lockHead = "# kelwhich-lock/"; // the version follows
inline constexpr std::string_view lockVersion = "1";

struct LockedCandidate {
    std::u16string path; // of a file, as the caller shortened it; of a built-in, its name
    kelwhich::WhichResultType kind;
    bool isUser;
    bool isSupported;
    bool isIndirect;
    bool isMissing;                                  // it is a file that does not exist
    std::optional<kelwhich::Explanation::Key> ahead; // of the next one; none for the last, or when a redirect is

    friend bool operator==(const LockedCandidate&, const LockedCandidate&) = default;
};

struct LockedName {
    std::u16string name;
    std::vector<LockedCandidate> candidates; // in the order of the answer

    friend bool operator==(const LockedName&, const LockedName&) = default;
};

// Paths as in the explanation. Which candidates are files that do not exist, the caller knows.
[[nodiscard]] LockedName lockedName(const kelwhich::Explanation& explanation,
                                    const std::function<bool(const kelwhich::Explanation::Candidate&)>& isMissing);

// How texts are written. `write` is reversible; its results are UTF-8 without characters below U+0021 at their
// beginning or below U+0020 elsewhere. `read` has no value for a text that is not written so.
struct Spelling {
    std::string (*write)(const std::u16string& text);
    std::optional<std::u16string> (*read)(std::string_view spelled);
};

// The line, without its end, of a name with candidates.
[[nodiscard]] std::string lockLine(const LockedName& locked, const Spelling& spelling);

// The name in a line, as it is spelled there; the whole line when that is malformed.
[[nodiscard]] std::string_view nameInLine(std::string_view line);
// `name` is not empty.
[[nodiscard]] std::string spelledName(const std::u16string& name, const Spelling& spelling);

// Errors: std::runtime_error, one line: the field, counted from 1, and what was expected there.
[[nodiscard]] LockedName readLockLine(std::string_view line, const Spelling& spelling);

} // namespace tessgen::analysis
