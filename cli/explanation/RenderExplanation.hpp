// Renders explanations: as text for people, as JSON for programs.
#pragma once

#include "cli/explanation/WhyNot.hpp"
#include "cli/output/Columns.hpp"
#include "tessgen/kelwhich/Explanation.hpp"

#include <nlohmann/json_fwd.hpp>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

struct Explained {
    std::string query; // UTF-8
    kelwhich::Explanation explanation;
    std::optional<WhyNot> whyNot;
    std::vector<std::string> notes;      // what leads on when there is no candidate, escaped; text only
    std::vector<std::u16string> missing; // the paths of candidates that are files and do not exist

    [[nodiscard]] bool isMissing(const kelwhich::Explanation::Candidate& candidate) const {
        return std::find(missing.begin(), missing.end(), candidate.result.path) != missing.end();
    }
};

// The redirects; then for each resolved name its candidates, a table of their keys in which "*" marks the deciding one,
// a line for each adjacent pair, the records, and the dropped candidates. All escaped; the tables fit into `columns`.
// Errors: std::runtime_error, here and below, when a text is not UTF-16.
std::string asText(const Explained& explained, bool coloured, std::size_t columns = outputColumns());

struct SearchedFolder {
    std::string path;              // UTF-8
    std::string_view problem = {}; // why nothing is found in it: "absent", "notAFolder", "unreadable"; else empty
};

enum class SearchedDetail {
    problems, // how many folders the host searched, and those with a problem
    hint,     // the same, and the option that lists them all
    all,      // each folder, in order
};
std::string searchedAsText(const std::vector<SearchedFolder>& searched, SearchedDetail detail, bool coloured);

// An element of the list of explanations.
nlohmann::ordered_json asJSON(const Explained& explained);

// One document, {"schema":"kelwhich/1","explanations":[...],"searched":[...],"notSearched":[...]}.
std::string asJSON(std::vector<nlohmann::ordered_json> explanations, const std::vector<SearchedFolder>& searched);

} // namespace tessgen::cli
