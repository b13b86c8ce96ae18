// Words the facts of an explanation. Texts are UTF-8 and not escaped yet.
#pragma once

#include "analysis/Answer.hpp"
#include "tessgen/kelwhich/Explanation.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::cli {

// What the candidate called `subject` is by this key when `name` is resolved, and why:
// "2 is a method of the class Shape", "1 is not supported: it has no record".
std::string reason(kelwhich::Explanation::Key key, const kelwhich::Explanation::Candidate& candidate,
                   std::string_view subject, const std::string& name);

// The rank of a candidate, or "=" and the rank of the one that it repeats.
std::string labelOf(const kelwhich::Explanation::Candidate& candidate);

// What puts a candidate before the next one when `name` is resolved, escaped:
// "1 before 2: 1 is the user's own; 2 is a KEL built-in, which is never the user's own".
std::string orderWords(const kelwhich::Explanation::Candidate& earlier, const kelwhich::Explanation::Candidate& later,
                       const std::string& name);

// The same of any two candidates of an answer, each judged under the name that lists it. After a redirect:
// "1 before 3: 1 is a candidate of modern, to which a record redirects".
std::string orderWords(const analysis::Answered& earlier, const analysis::Answered& later);

// "support record 2", "host answer 1".
std::string sourceWords(const kelwhich::Explanation::Source& source);

// The rank at which the file of a dropped record is answered all the same, as the host found it too.
std::optional<std::size_t> rankAllTheSame(const kelwhich::Explanation::Dropped& dropped,
                                          const kelwhich::Explanation::Resolution& resolution);

// Why a result of the resolution was dropped, and whether its file is answered all the same.
std::string dropWords(const kelwhich::Explanation::Dropped& dropped,
                      const kelwhich::Explanation::Resolution& resolution);

// Whether a redirect of `name` is followed, and why.
std::string redirectWords(const kelwhich::Explanation::Redirect& redirect, const std::string& name);

// The path, flags and unsupported names of the candidate's support record.
std::string recordWords(const kelwhich::Explanation::Candidate& candidate);

} // namespace tessgen::cli
