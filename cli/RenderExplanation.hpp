// How explanations look: as text for people, as JSON for programs.
#pragma once

#include "cli/WhyNot.hpp"
#include "tessgen/kelwhich/Explanation.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessgen::cli {

struct Explained {
    std::string query; // UTF-8
    kelwhich::Explanation explanation;
    std::optional<WhyNot> whyNot;
};

// Name by name, all escaped: the redirects; then for each name that was resolved its candidates, a table of their keys
// in which "*" marks the one that decides, a line for each neighbouring pair, the records, and what was left out. At
// the end the folders that the host searched, if there are any.
std::string asText(const std::vector<Explained>& all, const std::vector<std::string>& searched, bool coloured);

// One document, {"schema":"kelwhich/1","explanations":[...],"searched":[...]}.
std::string asJSON(const std::vector<Explained>& all, const std::vector<std::string>& searched);

} // namespace tessgen::cli
