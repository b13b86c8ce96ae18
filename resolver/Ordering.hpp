// The order of preference.
#pragma once

#include "resolver/Judgements.hpp"
#include "resolver/Pipeline.hpp"
#include "resolver/Predicates.hpp"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace tessgen::kelwhich {

// As std::stable_partition, but it needs no memory, so it cannot fail. Calls `holds` once for each element, in order.
template <typename Iterator, typename Holds>
Iterator stablePartition(Iterator begin, Iterator end, const Holds& holds) {
    constexpr auto few = 16;
    if (end - begin > few) {
        const auto middle = begin + (end - begin) / 2;
        const auto firstAhead = stablePartition(begin, middle, holds);
        const auto secondAhead = stablePartition(middle, end, holds);
        return std::rotate(firstAhead, middle, secondAhead);
    }
    auto ahead = begin;
    for (auto next = begin; next != end; ++next) {
        if (holds(*next)) {
            if (next != ahead) {
                auto moved = std::move(*next);
                std::move_backward(ahead, next, std::next(next));
                *ahead = std::move(moved);
            }
            ++ahead;
        }
    }
    return ahead;
}

template <typename Recorder>
void KELWhichResolver::Pipeline<Recorder>::order(Candidates& candidates, const std::u16string& name) const {
    const auto preferWhere = [&](auto judge) {
        stablePartition(candidates.begin(), candidates.end(), [&](Candidate& candidate) {
            auto judgement = judge(recorder_.resultOf(candidate));
            const auto isPreferred = static_cast<bool>(judgement);
            recorder_.note(candidate, std::move(judgement));
            return isPreferred;
        });
    };
    using Definition = DefinitionJudgement;
    using Result = const WhichResult&;

    // One candidate needs no order, but the collaborators are still asked: the calls are part of the contract.
    const bool isAlone = candidates.size() == 1 && !Recorder::wantsEveryJudgement;

    // `Explanation::keys` in reverse, the most significant one last: change both.
    preferWhere([](Result result) { return result.type == WhichResultType::KELPath; });
    preferWhere([](Result result) { return result.type == WhichResultType::KELBuiltin; });
    preferWhere([&](Result result) { return SourceFileJudgement{isAlone || isBuiltinOrSourceFile(result)}; });
    preferWhere([&](Result result) { return resolver_.supportOf(result, name); });
    preferWhere([&](Result result) { return resolver_.ownershipOf(result); });
    preferWhere([&](Result result) { return isAlone ? Definition{} : Definition{definitionBy(result, name)}; });
    recorder_.noteOrder(candidates);
}

} // namespace tessgen::kelwhich
