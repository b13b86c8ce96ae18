// The answer to a name as the rules read it from its explanation, and words for its candidates.
//
// Lifetime: what is returned points into the explanation.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tessgen::analysis {

// A candidate of the answer, and the resolution that lists it.
struct Answered {
    const kelwhich::Explanation::Candidate* candidate;
    const kelwhich::Explanation::Resolution* resolution;
};

// In the order of the answer, without repeats.
[[nodiscard]] std::vector<Answered> answerOf(const kelwhich::Explanation& explanation);

// The first key in which two candidates of one resolution differ, at the latest the order of gathering; none when a
// redirect puts one before the other.
[[nodiscard]] std::optional<kelwhich::Explanation::Key> keyBetween(const Answered& first, const Answered& other);

// Whether it is of a file, not of a built-in.
[[nodiscard]] bool isFile(kelwhich::WhichResultType kind);

// Whether it is of a file that can be looked for: one with an absolute path.
[[nodiscard]] bool isAbsoluteFile(const kelwhich::WhichResult& result);

// "your wave.vk", "the built-in sum"
[[nodiscard]] std::u16string subject(const kelwhich::Explanation::Candidate& candidate);

// "1 definition", "2 definitions"
[[nodiscard]] std::u16string counted(std::size_t number, const std::u16string& noun);

} // namespace tessgen::analysis
