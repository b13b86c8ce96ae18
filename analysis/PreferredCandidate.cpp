#include "analysis/PreferredCandidate.hpp"

#include "analysis/Answer.hpp"
#include "analysis/Rules.hpp"
#include "host/Paths.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace tessgen::analysis {

namespace {

using kelwhich::Explanation;
using Candidate = Explanation::Candidate;
using Key = Explanation::Key;
using Question = Explanation::Source::Question;

// A finding of the preferred candidate, with another one unless that is null.
Finding found(const Rule& rule, const Explanation& explanation, const Answered& first, const Answered* other,
              std::u16string message) {
    return {rule.code,
            rule.level,
            explanation.name,
            first.candidate->result.path,
            other != nullptr ? other->candidate->result.path : u"",
            other != nullptr ? keyBetween(first, *other) : std::nullopt,
            std::move(message),
            rule.advice};
}

// What gave the order in which both were found.
std::u16string orderOf(const Candidate& first, const Candidate& second) {
    const auto question = first.source.question;
    return question != second.source.question ? u"the order in which they were found"
           : question == Question::host       ? u"the order of the search"
                                              : u"the order of the records";
}

std::u16string whyUnsupported(const Answered& answered) {
    using Support = Explanation::Support;
    switch (answered.candidate->support) {
    case Support::hostBuiltin:
        return u", like every host built-in";
    case Support::noRecord:
        return u": it has no record";
    case Support::noFlag:
        return u": its record sets no flag";
    default:
        return u": its record lists " + answered.resolution->name + u" as unsupported";
    }
}

} // namespace

std::optional<Finding> noCandidate(const Explanation& explanation) {
    if (!answerOf(explanation).empty()) {
        return std::nullopt;
    }
    const auto& dropped = explanation.resolutions.back().dropped; // of the name itself
    std::u16string message = u"nothing is found under this name";
    if (!dropped.empty()) {
        message = std::u16string(kelwhich::fileName(dropped.front().result.path))
                  + (dropped.front().rule == Explanation::DropRule::hostFile
                         ? u" has a record, but the host does not find it"
                         : u" lies in a private folder, which a name without \"/\" does not reach");
    }
    return Finding{rule::noCandidate.code,
                   rule::noCandidate.level,
                   explanation.name,
                   {},
                   dropped.empty() ? u"" : dropped.front().result.path,
                   {},
                   std::move(message),
                   rule::noCandidate.advice};
}

std::optional<Finding> unsupported(const Explanation& explanation, Level level) {
    const auto answer = answerOf(explanation);
    if (answer.empty() || answer.front().candidate->isSupported()) {
        return std::nullopt;
    }
    auto ofLevel = rule::unsupported;
    ofLevel.level = level;
    return found(ofLevel, explanation, answer.front(), nullptr,
                 subject(*answer.front().candidate) + u" is not supported" + whyUnsupported(answer.front()));
}

std::optional<Finding> missingFile(const Explanation& explanation, bool preferredExists) {
    const auto answer = answerOf(explanation);
    if (preferredExists || answer.empty()) {
        return std::nullopt;
    }
    return found(rule::missingFile, explanation, answer.front(), nullptr,
                 subject(*answer.front().candidate) + u" does not exist, and only its record leads to it");
}

std::optional<Finding> hidesSupported(const Explanation& explanation) {
    const auto answer = answerOf(explanation);
    const auto isSupported = [](const Answered& answered) { return answered.candidate->isSupported(); };
    const auto first = std::find_if(answer.begin(), answer.end(), isSupported);
    if (first == answer.begin() || first == answer.end()) {
        return std::nullopt;
    }
    const auto hidden = static_cast<std::size_t>(std::count_if(first, answer.end(), isSupported));
    return found(rule::hidesSupported, explanation, answer.front(), &*first,
                 subject(*answer.front().candidate) + u" comes before " + counted(hidden, u"supported definition"));
}

std::optional<Finding> hidesHost(const Explanation& explanation) {
    const auto answer = answerOf(explanation);
    if (answer.empty() || !answer.front().candidate->isUser()) {
        return std::nullopt;
    }
    const auto& user = *answer.front().candidate;
    const auto other = std::find_if(answer.begin(), answer.end(), [&](const Answered& answered) {
        return !answered.candidate->isUser() && answered.candidate->result.path != user.result.path;
    });
    if (other == answer.end()) {
        return std::nullopt;
    }
    const bool isKEL = other->candidate->kind != Explanation::Kind::other;
    return found(rule::hidesHost, explanation, answer.front(), &*other,
                 subject(user) + u" comes before " + subject(*other->candidate)
                     + (isKEL ? u" of the code generator" : u" of the host"));
}

std::optional<Finding> orderOnly(const Explanation& explanation) {
    const auto answer = answerOf(explanation);
    if (answer.size() < 2 || keyBetween(answer[0], answer[1]) != Key::gathered) {
        return std::nullopt;
    }
    return found(rule::orderOnly, explanation, answer[0], &answer[1],
                 u"only " + orderOf(*answer[0].candidate, *answer[1].candidate) + u" puts the first before the second");
}

std::optional<Finding> onlyIndirect(const Explanation& explanation) {
    const auto answer = answerOf(explanation);
    const bool isOnly = std::all_of(answer.begin(), answer.end(), [](const Answered& answered) {
        return answered.candidate->definition == Explanation::Definition::otherName;
    });
    if (answer.empty() || !isOnly) {
        return std::nullopt;
    }
    const auto& candidate = *answer.front().candidate;
    return found(rule::onlyIndirect, explanation, answer.front(), nullptr,
                 u"nothing defines the name itself; " + subject(candidate) + u" defines " + candidate.definedName);
}

std::optional<Finding> mainFinding(const Explanation& explanation, bool preferredExists) {
    auto finding = missingFile(explanation, preferredExists);
    if (!finding) {
        finding = hidesSupported(explanation);
    }
    return finding ? finding : orderOnly(explanation);
}

} // namespace tessgen::analysis
