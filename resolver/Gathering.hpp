// The candidates of a name as they are found, and which of them are left out.
#pragma once

#include "host/Paths.hpp"
#include "resolver/Pipeline.hpp"
#include "resolver/Predicates.hpp"

#include <range/v3/range/conversion.hpp>
#include <range/v3/view/concat.hpp>
#include <range/v3/view/enumerate.hpp>
#include <range/v3/view/transform.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

// Why a result for `name` is left out, if it is.
class DropRules {
public:
    using DropRule = Explanation::DropRule;
    using Question = Explanation::Source::Question;

    explicit DropRules(const std::u16string& name) : name_(name), excludesPrivate_(!containsSeparator(name)) {}

    [[nodiscard]] std::optional<DropRule> operator()(const WhichResult& result, Question question) const {
        if (question == Question::supportRecords && repeatsHost(result)) {
            return DropRule::hostFile;
        }
        return excludesPrivate_ && liesInPrivateFolder(result) ? std::optional(DropRule::privateFolder) : std::nullopt;
    }

private:
    // The host's own answer covers the record of a host file, unless the file defines another name.
    [[nodiscard]] bool repeatsHost(const WhichResult& result) const {
        return result.type == WhichResultType::ORVAKPath && !definesDifferentName(result.path, name_);
    }

    // A file that only the files of the folder above may use. One in a class's private folder belongs to the class.
    static bool liesInPrivateFolder(const WhichResult& result) {
        return isFile(result) && equal(fileName(parentDirectory(result.path)), u"private")
               && !getClassFolderInfo(result.path);
    }

    const std::u16string& name_;
    const bool excludesPrivate_;
};

template <typename Recorder>
auto KELWhichResolver::Pipeline<Recorder>::gather(const std::u16string& name) const -> Candidates {
    namespace views = ranges::views;
    using Source = Explanation::Source;

    const auto resultOf = [this](BasicSupportEntry& record) {
        const auto type = resolver_.typeOf(record);
        return WhichResult{std::move(record.path), type};
    };
    auto records = resolver_.findSupportEntry(name);
    auto ofRecords = records | views::transform(resultOf) | ranges::to<std::vector>();
    auto ofHost = resolver_.which_->which(name);

    const auto numbered = [](std::vector<WhichResult>& results, Source::Question question) {
        return views::enumerate(results) | views::transform([question](const auto& found) {
                   return std::pair<WhichResult&, Source>(found.second, Source{question, found.first + 1});
               });
    };
    auto all =
        views::concat(numbered(ofRecords, Source::Question::supportRecords), numbered(ofHost, Source::Question::host));

    const DropRules ruleFor(name);
    Candidates candidates;
    candidates.reserve(ofRecords.size() + ofHost.size());
    recorder_.start(name, ofRecords.size() + ofHost.size());
    for (const auto& [result, source] : all) {
        if (const auto rule = ruleFor(result, source.question)) {
            recorder_.drop(std::move(result), source, *rule);
        } else {
            candidates.push_back(recorder_.keep(std::move(result), source));
        }
    }
    return candidates;
}

} // namespace tessgen::kelwhich
