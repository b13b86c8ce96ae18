#include "host/Paths.hpp"
#include "resolver/Predicates.hpp"
#include "resolver/Verdicts.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

namespace {

// A file that only the files of the folder above may use. One in a class's private folder belongs to the class.
bool liesInPrivateFolder(const WhichResult& result) {
    return isFile(result) && sameText(fileName(parentDirectory(result.path)), u"private")
           && !getClassFolderInfo(result.path);
}

} // namespace

std::vector<KELWhichResolver::Gathered> KELWhichResolver::gather(const std::u16string& name) const {
    using Source = Explanation::Source;
    using DropRule = Explanation::DropRule;
    const bool excludePrivate = !containsSeparator(name);
    std::vector<Gathered> all;
    const auto add = [&](WhichResult&& result, Source::Question question, std::size_t number, bool addsNothing) {
        const auto dropped = addsNothing                                     ? std::optional(DropRule::hostFile)
                             : excludePrivate && liesInPrivateFolder(result) ? std::optional(DropRule::privateFolder)
                                                                             : std::nullopt;
        all.push_back({std::move(result), {question, number}, dropped});
    };
    const auto entries = findSupportEntry(name);
    all.reserve(entries.size());
    for (const auto& entry : entries) {
        auto result = entryToWhichResult(entry);
        // A record of a host file adds nothing that the host's own answer does not say, unless the file defines
        // another name.
        const bool addsNothing = result.type == WhichResultType::ORVAKPath && !definesDifferentName(result, name);
        add(std::move(result), Source::Question::supportRecords, all.size() + 1, addsNothing);
    }
    auto hostResults = which_->which(name);
    all.reserve(entries.size() + hostResults.size());
    for (auto& result : hostResults) {
        add(std::move(result), Source::Question::host, all.size() - entries.size() + 1, false);
    }
    return all;
}

std::vector<WhichResult> KELWhichResolver::unorderedResolveWithoutRedirect(const std::u16string& name) const {
    auto gathered = gather(name);
    std::vector<WhichResult> results;
    results.reserve(gathered.size());
    for (auto& candidate : gathered) {
        if (!candidate.dropped) {
            results.push_back(std::move(candidate.result));
        }
    }
    return results;
}

} // namespace tessgen::kelwhich
