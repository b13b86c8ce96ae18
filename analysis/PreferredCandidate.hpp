// The rules about the preferred candidate of a name. None but `noCandidate` finds anything when there is no candidate.
#pragma once

#include "analysis/Finding.hpp"

#include <optional>

namespace tessgen::analysis {

// "no-candidate": there is none. What was left out for the name, if anything, is the other file.
[[nodiscard]] std::optional<Finding> noCandidate(const kelwhich::Explanation& explanation);

// "unsupported": code cannot be generated for the preferred candidate. Of this level.
[[nodiscard]] std::optional<Finding> unsupported(const kelwhich::Explanation& explanation, Level level);

// "missing-file": the preferred candidate is a file that does not exist. Whether it exists, the caller knows.
[[nodiscard]] std::optional<Finding> missingFile(const kelwhich::Explanation& explanation, bool preferredExists);

// "hides-supported": the preferred candidate is not supported, and another one is.
[[nodiscard]] std::optional<Finding> hidesSupported(const kelwhich::Explanation& explanation);

// "hides-host": the preferred candidate is the user's, and another file or built-in is not.
[[nodiscard]] std::optional<Finding> hidesHost(const kelwhich::Explanation& explanation);

// "order-only": the first two candidates differ only in the order in which they were found.
[[nodiscard]] std::optional<Finding> orderOnly(const kelwhich::Explanation& explanation);

// "only-indirect": every candidate is a file that defines another name. Methods define their own.
[[nodiscard]] std::optional<Finding> onlyIndirect(const kelwhich::Explanation& explanation);

// Of `missingFile`, `hidesSupported` and `orderOnly` the first that finds something.
[[nodiscard]] std::optional<Finding> mainFinding(const kelwhich::Explanation& explanation, bool preferredExists);

} // namespace tessgen::analysis
