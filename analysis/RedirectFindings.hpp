// The rules about the redirects that a name meets.
#pragma once

#include "analysis/Finding.hpp"

#include <vector>

namespace tessgen::analysis {

// "redirect-ignored": a redirect does not count; "redirect-dead": it counts, and nothing is found under its target.
// One for each path and target, in the order of the records. Each is about the preferred candidate, with the file or
// built-in of the redirect unless that is the same or the only one.
[[nodiscard]] std::vector<Finding> redirectFindings(const kelwhich::Explanation& explanation);

} // namespace tessgen::analysis
