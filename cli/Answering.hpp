// A name and its answer.
#pragma once

#include "cli/Render.hpp"
#include "cli/Resolver.hpp"

#include <string_view>

namespace tessgen::cli {

// The candidates of `name`, the preferred one first.
// Errors: std::runtime_error for a name that is refused: one that is empty, is not UTF-8 or holds a NUL; what the
// resolver throws.
Answer answerTo(std::string_view name, const kelwhich::KELWhichResolver& resolver);

// Leaves of an answer what the request wants to see.
void keepWanted(Answer& answer, const Request& request);

// Errors: std::runtime_error when raw paths would go to a terminal, which they could rule.
void refusePathsOnTerminal(const Request& request);

} // namespace tessgen::cli
