#include "host/Paths.hpp"
#include "resolver/Judgements.hpp"
#include "resolver/Predicates.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

namespace {

// A file that only the files of the folder above may use. One in a class's private folder belongs to the class.
bool liesInPrivateFolder(const WhichResult& result) {
    return isFile(result) && equal(fileName(parentDirectory(result.path)), u"private")
           && !getClassFolderInfo(result.path);
}

// Why a candidate of `name` is left out, if it is.
class DropRules {
public:
    using DropRule = Explanation::DropRule;

    explicit DropRules(const std::u16string& name) : name_(name), excludesPrivate_(!containsSeparator(name)) {}

    std::optional<DropRule> ofHostAnswer(const WhichResult& result) const {
        return excludesPrivate_ && liesInPrivateFolder(result) ? std::optional(DropRule::privateFolder) : std::nullopt;
    }
    // A record of a host file adds nothing that the host's own answer does not say, unless the file defines another
    // name.
    std::optional<DropRule> ofRecord(const WhichResult& result) const {
        const bool addsNothing = result.type == WhichResultType::ORVAKPath && !definesDifferentName(result, name_);
        return addsNothing ? DropRule::hostFile : ofHostAnswer(result);
    }

private:
    const std::u16string& name_;
    const bool excludesPrivate_;
};

} // namespace

std::vector<KELWhichResolver::Gathered> KELWhichResolver::gather(const std::u16string& name) const {
    using Source = Explanation::Source;
    const DropRules rules(name);
    std::vector<Gathered> all;
    const auto entries = findSupportEntry(name);
    all.reserve(entries.size());
    for (const auto& entry : entries) {
        auto result = entryToWhichResult(entry);
        const auto dropped = rules.ofRecord(result);
        all.push_back({std::move(result), {Source::Question::supportRecords, all.size() + 1}, dropped});
    }
    auto hostResults = which_->which(name);
    all.reserve(entries.size() + hostResults.size());
    for (auto& result : hostResults) {
        const auto dropped = rules.ofHostAnswer(result);
        all.push_back({std::move(result), {Source::Question::host, all.size() - entries.size() + 1}, dropped});
    }
    return all;
}

// Asks as `gather` does, without what is left out. Most names have answers of the host alone, which are handed on.
std::vector<WhichResult> KELWhichResolver::unorderedResolveWithoutRedirect(const std::u16string& name) const {
    const DropRules rules(name);
    std::vector<WhichResult> results;
    for (const auto& entry : findSupportEntry(name)) {
        auto result = entryToWhichResult(entry);
        if (!rules.ofRecord(result)) {
            results.push_back(std::move(result));
        }
    }
    auto hostResults = which_->which(name);
    std::erase_if(hostResults, [&](const WhichResult& result) { return rules.ofHostAnswer(result).has_value(); });
    if (results.empty()) {
        return hostResults;
    }
    results.insert(results.end(), std::make_move_iterator(hostResults.begin()),
                   std::make_move_iterator(hostResults.end()));
    return results;
}

} // namespace tessgen::kelwhich
