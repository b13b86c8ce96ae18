// A name and its answer.
#pragma once

#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Render.hpp"

#include <string>
#include <string_view>

namespace tessgen::cli {

// The candidates of `name`, the preferred one first.
// Errors: those of `nameIn` and of the resolver.
Answer answerTo(std::string_view name, const kelwhich::KELWhichResolver& resolver);

// Why an answer that has candidates is not as required, to stand behind the name; empty when it is.
std::string unmetRequirement(const Answer& answer, const Requirement& requirement);

// Leaves of an answer what the request wants to see.
void applySelection(Answer& answer, const Request& request);

// Errors: std::runtime_error when raw paths would go to a terminal, which they could rule.
void refusePathsOnTerminal(const Request& request);

} // namespace tessgen::cli
