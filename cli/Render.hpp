// How answers look: as text for people, as JSON for programs.
#pragma once

#include "tessgen/kelwhich/WhichResult.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

struct Candidate {
    std::string path; // UTF-8
    kelwhich::WhichResultType type;
    // Verdicts under the name in whose list it stands: of a redirect's target, under that.
    bool isUser;
    bool isSupported;
    bool isIndirect;
};

struct Answer {
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

// One line: {"schema":"kelwhich/1","query":...,"candidates":[...]}, or with "error" instead of the candidates. A query
// that is not UTF-8 is escaped as in text.
std::string asJSONLine(const Answer& answer);
std::string asJSONLine(std::string_view query, std::string_view error);

// The paths of those candidates that are files, as they are, each ended by a NUL.
std::string asPaths(const Answer& answer);

} // namespace tessgen::cli
