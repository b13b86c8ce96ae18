// All findings of a name that is used and of a file that defines one: which rules apply, in which order.
//
// Findings about a name are about its preferred candidate. None silences another, with two exceptions: a definition
// that no name reaches is `unreachable` alone, and one that is not the preferred candidate of its name is `hidden`
// alone.
#pragma once

#include "analysis/Definition.hpp"
#include "analysis/Finding.hpp"

#include <vector>

namespace tessgen::analysis {

// Of a name that a program uses. Whether the preferred candidate exists, the caller knows; a built-in does.
[[nodiscard]] std::vector<Finding> findingsOfUse(const kelwhich::Explanation& explanation, bool preferredExists);

// Of a definition; `explanation` is of its `ownName`.
[[nodiscard]] std::vector<Finding> findingsOfDefinition(const Definition& definition,
                                                        const kelwhich::Explanation& explanation);

} // namespace tessgen::analysis
