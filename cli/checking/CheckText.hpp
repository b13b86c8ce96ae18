// The findings of `check` for people: a line for each, like a compiler's.
#pragma once

#include "cli/reports/Report.hpp"

#include <string>

namespace tessgen::cli {

// For each finding that is not known and has at least this level: "PLACE: LEVEL: MESSAGE [CODE]"; then, once for each
// code and advice, what to do; then how many notes are not listed. Escaped.
std::string asText(const Report& report, analysis::Level least, bool coloured);

} // namespace tessgen::cli
