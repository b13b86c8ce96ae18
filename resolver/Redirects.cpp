#include "resolver/Duplicates.hpp"
#include "resolver/Predicates.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <range/v3/range/conversion.hpp>
#include <range/v3/view/concat.hpp>
#include <range/v3/view/counted.hpp>
#include <range/v3/view/filter.hpp>
#include <range/v3/view/join.hpp>
#include <range/v3/view/move.hpp>
#include <range/v3/view/transform.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace tessgen::kelwhich {

namespace {

namespace views = ranges::views;

using BasicSupportEntry = KELWhichResolver::BasicSupportEntry;

std::vector<WhichResult> removeDuplicateResults(std::vector<WhichResult> list) {
    if (list.size() < 2) {
        return list;
    }
    DistinctResults distinct(list.size());
    std::vector<bool> isNew(list.size()); // all of them first, since `distinct` holds views of the texts
    std::transform(list.begin(), list.end(), isNew.begin(),
                   [&distinct](const WhichResult& result) { return distinct.add(result).isNew; });
    if (std::find(isNew.begin(), isNew.end(), false) != isNew.end()) {
        auto keeps = isNew.begin();
        std::erase_if(list, [&keeps](const WhichResult& /*result*/) { return !*keeps++; });
    }
    return list;
}

} // namespace

std::vector<WhichResult> KELWhichResolver::resolve(const std::u16string& name) const {
    const auto entries = findSupportEntry(name);
    const auto isHonoured = [&](const BasicSupportEntry& entry) {
        return entry.carriedFlag && !definesDifferentName(entry.path, name);
    };
    if (std::none_of(entries.begin(), entries.end(), isHonoured)) {
        return removeDuplicateResults(resolveWithoutRedirect(name)); // as below, for most names
    }
    const auto candidatesOf = [&](const std::u16string& target) { return resolveWithoutRedirect(target); };

    // Lazy: one name at a time is resolved, when its turn in the joined list comes.
    auto targets = entries | views::filter(isHonoured) | views::transform(&BasicSupportEntry::symbol);
    auto candidates = views::concat(targets, views::counted(&name, 1)) | views::transform(candidatesOf) | views::join;
    return removeDuplicateResults(candidates | views::move | ranges::to<std::vector>());
}

} // namespace tessgen::kelwhich
