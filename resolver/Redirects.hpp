// The candidates of a name's redirect targets and of the name itself, as one list without repeats.
#pragma once

#include "resolver/Duplicates.hpp"
#include "resolver/Gathering.hpp"
#include "resolver/Ordering.hpp"
#include "resolver/Pipeline.hpp"
#include "resolver/Predicates.hpp"

#include <string>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

template <typename Recorder>
bool KELWhichResolver::Pipeline<Recorder>::isHonoured(const BasicSupportEntry& entry,
                                                      const std::u16string& name) const {
    if (!entry.carriedFlag) {
        return false;
    }
    const auto definition = definitionAt(entry.path, name);
    recorder_.noteRedirect(entry, definition);
    return definition == Explanation::Definition::direct;
}

template <typename Recorder>
auto KELWhichResolver::Pipeline<Recorder>::resolveWithoutRedirect(const std::u16string& name) const -> Candidates {
    auto candidates = gather(name);
    order(candidates, name);
    return candidates;
}

template <typename Recorder>
auto KELWhichResolver::Pipeline<Recorder>::resolve(const std::u16string& name) const -> Candidates {
    auto redirects = resolver_.findSupportEntry(name);
    std::erase_if(redirects, [&](const BasicSupportEntry& entry) { return !isHonoured(entry, name); });
    DistinctCandidates distinct(recorder_);
    for (const auto& redirect : redirects) {
        distinct.append(resolveWithoutRedirect(redirect.symbol));
    }
    distinct.append(resolveWithoutRedirect(name));
    return std::move(distinct).take();
}

} // namespace tessgen::kelwhich
