// Resolves a name and applies what the request demands of the answer.
#pragma once

#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Render.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

// The candidates of `name`, the preferred one first; in JSON, and for a person who asks for single names, with the
// finding that matters most. Errors: those of `parseName` and of the resolver.
Answer answerTo(std::string_view name, const ResolverSession& resolver, const Request& request);

// For a person who completes file names on the command line, and may mean the file of that name in the working folder.
// `paths` are those of the name's candidates.
void noteOnWorkingFolder(const std::string& name, const std::vector<std::string>& paths, const Request& request);

// Why an answer with candidates does not meet the requirement, to follow "NAME: "; empty when it does.
std::string unmetRequirement(const Answer& answer, const Requirement& requirement);

// Drops the candidates that the request does not want to see.
void applySelection(Answer& answer, const Request& request);

// For a person who typed nothing but the word of a command: says how to ask for the name, if it has a candidate. Silent
// when that cannot be found out. The second form opens the installation itself.
void noteOnName(const Request& request, const ResolverSession& resolver);
void noteOnName(const Request& request);

// Errors: std::runtime_error when unescaped paths would go to a terminal, which they could control.
void refusePathsOnTerminal(const Request& request);

} // namespace tessgen::cli
