// The order of preference, stated once for lists of any form.
#pragma once

#include "tessgen/kelwhich/WhichResult.hpp"

#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

// As std::stable_partition, which allocates memory each time.
template <typename Candidate, typename Holds>
void moveAhead(std::vector<Candidate>& candidates, const Holds& holds) {
    constexpr std::size_t usualCount = 8;
    const auto end = candidates.end();
    auto ahead = std::find_if_not(candidates.begin(), end, holds);
    auto next = ahead == end ? end : std::find_if(std::next(ahead), end, holds);
    if (next == end) {
        return; // none stands behind one that it is to stand ahead of
    }
    boost::container::small_vector<Candidate, usualCount> others(std::make_move_iterator(ahead),
                                                                 std::make_move_iterator(next));
    *ahead++ = std::move(*next);
    while (++next != end) {
        if (holds(*next)) {
            *ahead++ = std::move(*next);
        } else {
            others.push_back(std::move(*next));
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
