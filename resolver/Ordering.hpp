// The order of preference, stated once for lists of any form.
#pragma once

#include "tessgen/kelwhich/WhichResult.hpp"

#include <algorithm>
#include <vector>

namespace tessgen::kelwhich {

// Orders candidates as `judge` tells of each: the last question is the most significant key, and what ties on all of
// them stays as it was.
template <typename Candidate, typename Judge>
void orderByPreference(std::vector<Candidate>& candidates, const Judge& judge) {
    const auto preferWhere = [&](auto holds) { std::stable_partition(candidates.begin(), candidates.end(), holds); };
    preferWhere([&](const Candidate& candidate) { return judge.type(candidate) == WhichResultType::KELPath; });
    preferWhere([&](const Candidate& candidate) { return judge.type(candidate) == WhichResultType::KELBuiltin; });
    preferWhere([&](const Candidate& candidate) { return judge.isBuiltinOrSourceFile(candidate); });
    preferWhere([&](const Candidate& candidate) { return judge.isSupported(candidate); });
    preferWhere([&](const Candidate& candidate) { return judge.isUser(candidate); });
    preferWhere([&](const Candidate& candidate) { return judge.isDirect(candidate); });
}

} // namespace tessgen::kelwhich
