// The candidates of a name's redirect targets and of the name itself, as one list without repeats.
#pragma once

#include "resolver/Duplicates.hpp"
#include "resolver/Gathering.hpp"
#include "resolver/Ordering.hpp"
#include "resolver/Pipeline.hpp"
#include "resolver/Predicates.hpp"

#include <range/v3/range/conversion.hpp>
#include <range/v3/view/concat.hpp>
#include <range/v3/view/counted.hpp>
#include <range/v3/view/join.hpp>
#include <range/v3/view/move.hpp>
#include <range/v3/view/transform.hpp>

#include <boost/container/small_vector.hpp>

#include <cstddef>
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
auto KELWhichResolver::Pipeline<Recorder>::dropRepeats(Candidates candidates) const -> Candidates {
    constexpr std::size_t usualCount = 16;
    DistinctResults distinct(candidates.size());
    boost::container::small_vector<bool, usualCount> repeats; // all of them first: `distinct` holds views of the texts
    for (auto& candidate : candidates) {
        const auto place = distinct.add(recorder_.resultOf(candidate));
        recorder_.notePlace(candidate, place.number, !place.isNew);
        repeats.push_back(!place.isNew);
    }
    auto repeat = repeats.begin();
    std::erase_if(candidates, [&repeat](const Candidate& /*candidate*/) { return *repeat++; });
    return candidates;
}

template <typename Recorder>
auto KELWhichResolver::Pipeline<Recorder>::resolve(const std::u16string& name) const -> Candidates {
    namespace views = ranges::views;
    auto redirects = resolver_.findSupportEntry(name);
    std::erase_if(redirects, [&](const BasicSupportEntry& entry) { return !isHonoured(entry, name); });
    if (redirects.empty()) {
        return dropRepeats(resolveWithoutRedirect(name)); // as below, for most names
    }
    // Lazy: one name at a time is resolved, when its turn in the joined list comes.
    const auto candidatesOf = [this](const std::u16string& target) { return resolveWithoutRedirect(target); };
    auto names = views::concat(redirects | views::transform(&BasicSupportEntry::symbol), views::counted(&name, 1));
    auto candidates = names | views::transform(candidatesOf) | views::join;
    return dropRepeats(candidates | views::move | ranges::to<std::vector>());
}

} // namespace tessgen::kelwhich
