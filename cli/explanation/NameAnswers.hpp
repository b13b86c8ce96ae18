// What the renderers of answers and of explanations take, from an explanation.
//
// Threads: those of the resolver.
#pragma once

#include "cli/explanation/RenderExplanation.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Render.hpp"
#include "tessgen/kelwhich/Explanation.hpp"

#include <string>

namespace tessgen::cli {

// The candidates, the preferred one first. `marksMissing`: those that do not exist are marked.
// Errors: std::runtime_error when a text is not UTF-16.
Answer answerFrom(std::string query, const kelwhich::Explanation& explanation, const ResolverSession& resolver,
                  bool marksMissing);

Explained explainedFrom(std::string query, kelwhich::Explanation explanation, const ResolverSession& resolver);

} // namespace tessgen::cli
