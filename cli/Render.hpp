// How answers look: as text for people, as JSON for programs.
#pragma once

#include "tessgen/kelwhich/WhichResult.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

struct Candidate {
    std::string path; // UTF-8
    kelwhich::WhichResultType type;
};

struct Answer {
    std::string query; // UTF-8
    std::vector<Candidate> candidates;
};

// The name of a kind, as in the library; nothing when there is no such kind.
std::string_view kindName(kelwhich::WhichResultType type);
std::optional<kelwhich::WhichResultType> kindNamed(std::string_view name);

// Name by name: the name, then a line for each candidate with its rank, its kind in words and its path, all escaped.
std::string asText(const std::vector<Answer>& answers, bool coloured);

// One document, {"schema":"kelwhich/1","answers":[...]}, indented by two; characters that can be seen are not escaped.
std::string asJSON(const std::vector<Answer>& answers);

} // namespace tessgen::cli
