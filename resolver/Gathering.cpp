#include "host/Paths.hpp"
#include "resolver/Predicates.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <range/v3/algorithm/move.hpp>
#include <range/v3/iterator/insert_iterators.hpp>
#include <range/v3/range/operations.hpp>
#include <range/v3/view/concat.hpp>
#include <range/v3/view/filter.hpp>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

namespace {

namespace views = ranges::views;

bool isFile(const WhichResult& result) {
    return result.type == WhichResultType::KELPath || result.type == WhichResultType::ORVAKPath;
}

// A file that only the files of the folder above may use. One in a class's private folder belongs to the class.
bool liesInPrivateFolder(const WhichResult& result) {
    return isFile(result) && !getClassFolderInfo(result.path)
           && sameText(fileName(parentDirectory(result.path)), u"private");
}

} // namespace

std::vector<WhichResult> KELWhichResolver::unorderedResolveWithoutRedirect(const std::u16string& name) const {
    // A record of a host file adds nothing that the host's own answer does not say, unless the file defines another
    // name.
    const auto addsToHost = [&](const WhichResult& result) {
        return result.type != WhichResultType::ORVAKPath || definesDifferentName(result, name);
    };
    const auto entries = findSupportEntry(name);
    std::vector<WhichResult> kelResults;
    kelResults.reserve(entries.size());
    for (const auto& entry : entries) {
        auto result = entryToWhichResult(entry);
        if (addsToHost(result)) {
            kelResults.push_back(std::move(result));
        }
    }
    auto hostResults = which_->which(name);

    const bool excludePrivate = !containsSeparator(name);
    const auto stays = [&](const WhichResult& result) { return !(excludePrivate && liesInPrivateFolder(result)); };
    auto candidates = views::concat(kelResults, hostResults) | views::filter(stays);
    std::vector<WhichResult> results;
    results.reserve(static_cast<std::size_t>(ranges::distance(candidates)));
    ranges::move(candidates, ranges::back_inserter(results));
    return results;
}

} // namespace tessgen::kelwhich
