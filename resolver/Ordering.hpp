// The order of preference, stated once for lists of any form.
#pragma once

#include "tessgen/kelwhich/WhichResult.hpp"

#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

// As std::stable_partition, which allocates memory each time.
template <typename Candidate, typename Holds>
void moveAhead(std::vector<Candidate>& candidates, const Holds& holds) {
    constexpr std::size_t usualCount = 8;
    boost::container::small_vector<Candidate, usualCount> others;
    auto ahead = candidates.begin();
    for (auto& candidate : candidates) {
        if (!holds(candidate)) {
            others.push_back(std::move(candidate));
        } else if (others.empty()) {
            ++ahead;
        } else {
            *ahead++ = std::move(candidate);
        }
    }
    std::move(others.begin(), others.end(), ahead);
}

// Orders candidates as `judge` tells of each: the last question is the most significant key, and what ties on all of
// them stays as it was.
template <typename Candidate, typename Judge>
void orderByPreference(std::vector<Candidate>& candidates, const Judge& judge) {
    const auto preferWhere = [&](auto holds) { moveAhead(candidates, holds); };
    preferWhere([&](const Candidate& candidate) { return judge.type(candidate) == WhichResultType::KELPath; });
    preferWhere([&](const Candidate& candidate) { return judge.type(candidate) == WhichResultType::KELBuiltin; });
    preferWhere([&](const Candidate& candidate) { return judge.isBuiltinOrSourceFile(candidate); });
    preferWhere([&](const Candidate& candidate) { return judge.isSupported(candidate); });
    preferWhere([&](const Candidate& candidate) { return judge.isUser(candidate); });
    preferWhere([&](const Candidate& candidate) { return judge.isDirect(candidate); });
}

} // namespace tessgen::kelwhich
