// Renders answers: as text for people, as JSON for programs.
#pragma once

#include "analysis/Finding.hpp"
#include "analysis/Names.hpp"
#include "tessgen/kelwhich/WhichResult.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

struct Answer {
    struct Candidate {
        std::string path; // UTF-8
        kelwhich::WhichResultType type;
        // Verdicts for the name that the candidate is listed under: for a redirect, its target.
        bool isUser;
        bool isSupported;
        bool isIndirect;
        bool isMissing; // it is a file that does not exist
    };

    std::string query; // UTF-8
    std::vector<Candidate> candidates;
    std::optional<analysis::Finding> finding; // what matters most of the preferred candidate; in text a note
    bool hasLeftOut = false;                  // something was found and left out

    // For people, escaped; text only.
    std::string suggestion;         // beside "no candidate"
    std::vector<std::string> notes; // below the candidates
};

// For each name: the name, then one line per candidate with its rank, kind in words, verdicts and path, then the
// notes, all escaped. An empty line separates answers.
std::string asText(const std::vector<Answer>& answers, bool coloured);
std::string asText(const Answer& answer, bool coloured);

// One document, {"schema":"kelwhich/1","answers":[...]}.
std::string asJSON(const std::vector<Answer>& answers);

// One line: {"schema":"kelwhich/1","query":...,"candidates":[...]}, with the finding if there is one; or with
// "error":{"message":...} in place of the candidates. A query that is not UTF-8 is escaped as in text.
std::string asJSONLine(const Answer& answer);
std::string asJSONLine(std::string_view query, std::string_view error);

// The paths of the candidates that are files, unescaped and NUL-terminated.
std::string asPaths(const Answer& answer);

using analysis::kindName;
using analysis::kindNamed;

// The kind in words for people.
std::string_view kindWords(kelwhich::WhichResultType type);
inline constexpr std::size_t widestKindWords = std::string_view("host built-in method").size();

} // namespace tessgen::cli
