// How answers look: as text for people, as JSON for programs.
#pragma once

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
        // Verdicts under the name in whose list it stands: of a redirect's target, under that.
        bool isUser;
        bool isSupported;
        bool isIndirect;
    };

    std::string query; // UTF-8
    std::vector<Candidate> candidates;
    std::vector<std::string> near; // names that may be meant when there is no candidate; shown in text only
};

// Name by name: the name, then a line for each candidate with its rank, its kind in words, its verdicts and its path,
// all escaped. Answers are separated by an empty line.
std::string asText(const std::vector<Answer>& answers, bool coloured);
std::string asText(const Answer& answer, bool coloured);

// One document, {"schema":"kelwhich/1","answers":[...]}, indented by two; characters that can be seen are not escaped.
std::string asJSON(const std::vector<Answer>& answers);

// One line: {"schema":"kelwhich/1","query":...,"candidates":[...]}, or with "error":{"message":...} instead of the
// candidates. A query that is not UTF-8 is escaped as in text.
std::string asJSONLine(const Answer& answer);
std::string asJSONLine(std::string_view query, std::string_view error);

// The paths of those candidates that are files, as they are, each ended by a NUL.
std::string asPaths(const Answer& answer);

// The name of a kind, as in the library; nothing when there is no such kind.
std::string_view kindName(kelwhich::WhichResultType type);
std::optional<kelwhich::WhichResultType> kindNamed(std::string_view name);

// What people call the kind.
std::string_view kindWords(kelwhich::WhichResultType type);
inline constexpr std::size_t widestKindWords = std::string_view("host built-in method").size();

} // namespace tessgen::cli
