// The facts of an explanation in plain words. Texts are UTF-8 and not escaped yet.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"

#include <string>
#include <string_view>

namespace tessgen::cli {

// The key's name, as a column and as JSON have it.
std::string_view keyName(kelwhich::Explanation::Key key);

// What the candidate that people know as `subject` is by this key when `name` is resolved, and why:
// "2 is a method of the class Shape", "no support record has the path of 1".
std::string reason(kelwhich::Explanation::Key key, const kelwhich::Explanation::Candidate& candidate,
                   std::string_view subject, const std::string& name);

// "support record 2", "host answer 1".
std::string sourceWords(const kelwhich::Explanation::Source& source);

// Why a candidate was dropped.
std::string_view dropWords(kelwhich::Explanation::DropRule rule);

// What became of a redirect of `name`, and why.
std::string redirectWords(const kelwhich::Explanation::Redirect& redirect, const std::string& name);

// What a support record says: its path, its flags, the names under which it is not supported.
std::string recordWords(const kelwhich::Explanation::Candidate& candidate);

} // namespace tessgen::cli
