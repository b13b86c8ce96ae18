#include "resolver/Predicates.hpp"
#include "resolver/Repeats.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <range/v3/range/conversion.hpp>
#include <range/v3/view/concat.hpp>
#include <range/v3/view/counted.hpp>
#include <range/v3/view/filter.hpp>
#include <range/v3/view/join.hpp>
#include <range/v3/view/move.hpp>
#include <range/v3/view/transform.hpp>

#include <string>
#include <vector>

namespace tessgen::kelwhich {

namespace {

namespace views = ranges::views;

using BasicSupportEntry = KELWhichResolver::BasicSupportEntry;

std::vector<WhichResult> removeDuplicateResults(const std::vector<WhichResult>& list) {
    std::vector<WhichResult> results;
    results.reserve(list.size());
    DistinctResults distinct(list.size());
    for (const auto& result : list) {
        if (distinct.add(result).isNew) {
            results.push_back(result);
        }
    }
    return results;
}

} // namespace

std::vector<WhichResult> KELWhichResolver::resolve(const std::u16string& name) const {
    const auto entries = findSupportEntry(name);
    const auto isHonoured = [&](const BasicSupportEntry& entry) {
        return entry.carriedFlag && !definesDifferentName(entry.path, name);
    };
    const auto candidatesOf = [&](const std::u16string& target) { return resolveWithoutRedirect(target); };

    // Lazy: one name at a time is resolved, when its turn in the joined list comes.
    auto targets = entries | views::filter(isHonoured) | views::transform(&BasicSupportEntry::symbol);
    auto candidates = views::concat(targets, views::counted(&name, 1)) | views::transform(candidatesOf) | views::join;
    return removeDuplicateResults(candidates | views::move | ranges::to<std::vector>());
}

} // namespace tessgen::kelwhich
