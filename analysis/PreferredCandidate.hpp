// The rules about the preferred candidate of a name.
#pragma once

#include "analysis/Finding.hpp"

#include <optional>

namespace tessgen::analysis {

// "missing-file": the preferred candidate is a file that does not exist. Whether it exists, the caller knows.
[[nodiscard]] std::optional<Finding> missingFile(const kelwhich::Explanation& explanation, bool preferredExists);

// "hides-supported": the preferred candidate is not supported, and another one is.
[[nodiscard]] std::optional<Finding> hidesSupported(const kelwhich::Explanation& explanation);

// "order-only": the first two candidates differ only in the order in which they were found.
[[nodiscard]] std::optional<Finding> orderOnly(const kelwhich::Explanation& explanation);

// The finding that matters most, if there is one: in the order above.
[[nodiscard]] std::optional<Finding> mainFinding(const kelwhich::Explanation& explanation, bool preferredExists);

} // namespace tessgen::analysis
