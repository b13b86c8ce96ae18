// Words the facts of an explanation. Texts are UTF-8 and not escaped yet.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"

#include <string>
#include <string_view>

namespace tessgen::cli {

// The key's name in JSON.
std::string_view keyName(kelwhich::Explanation::Key key);

// What the candidate called `subject` is by this key when `name` is resolved, and why:
// "2 is a method of the class Shape", "1 is not supported: it has no record".
std::string reason(kelwhich::Explanation::Key key, const kelwhich::Explanation::Candidate& candidate,
                   std::string_view subject, const std::string& name);

// "support record 2", "host answer 1".
std::string sourceWords(const kelwhich::Explanation::Source& source);

// Why a candidate was dropped.
std::string_view dropWords(kelwhich::Explanation::DropRule rule);

// Whether a redirect of `name` is followed, and why.
std::string redirectWords(const kelwhich::Explanation::Redirect& redirect, const std::string& name);

// The path, flags and unsupported names of the candidate's support record.
std::string recordWords(const kelwhich::Explanation::Candidate& candidate);

} // namespace tessgen::cli
