#include "analysis/PreferredCandidate.hpp"

#include "host/Paths.hpp"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <string>
#include <vector>

namespace tessgen::analysis {

namespace {

using kelwhich::Explanation;
using Candidate = Explanation::Candidate;
using Key = Explanation::Key;
using Question = Explanation::Source::Question;

// A candidate of the answer, and the resolution that lists it.
struct Answered {
    const Candidate* candidate;
    const Explanation::Resolution* resolution;
};

// In the order of the answer.
std::vector<Answered> answerOf(const Explanation& explanation) {
    std::vector<Answered> answer;
    for (const auto& resolution : explanation.resolutions) {
        for (const auto& candidate : resolution.candidates) {
            if (!candidate.repeat) {
                answer.push_back({&candidate, &resolution});
            }
        }
    }
    return answer;
}

// The first key in which two candidates of one resolution differ, at the latest the order of gathering; none when a
// redirect puts one before the other.
std::optional<Key> keyBetween(const Answered& first, const Answered& other) {
    if (first.resolution != other.resolution) {
        return std::nullopt;
    }
    return *std::find_if(Explanation::keys.begin(), Explanation::keys.end(), [&](Key key) {
        return std::is_neq(Explanation::compare(key, *first.candidate, *other.candidate));
    });
}

// "your wave.vk", "the built-in sum"
std::u16string subject(const Candidate& candidate) {
    using Type = kelwhich::WhichResultType;
    const auto& [path, type] = candidate.result;
    if (type != Type::KELPath && type != Type::ORVAKPath) {
        return u"the built-in " + path;
    }
    return (candidate.isUser() ? u"your " : u"") + std::u16string(kelwhich::fileName(path));
}

std::u16string counted(std::size_t number, const std::u16string& noun) {
    const auto digits = std::to_string(number);
    return std::u16string(digits.begin(), digits.end()) + u" " + noun + (number == 1 ? u"" : u"s");
}

// What gave the order in which both were found.
std::u16string orderOf(const Candidate& first, const Candidate& second) {
    const auto question = first.source.question;
    return question != second.source.question ? u"the order in which they were found"
           : question == Question::host       ? u"the order of the search"
                                              : u"the order of the records";
}

} // namespace

std::optional<Finding> missingFile(const Explanation& explanation, bool preferredExists) {
    const auto answer = answerOf(explanation);
    if (preferredExists || answer.empty()) {
        return std::nullopt;
    }
    const auto& candidate = *answer.front().candidate;
    return Finding{"missing-file",
                   Level::error,
                   explanation.name,
                   candidate.result.path,
                   {},
                   {},
                   subject(candidate) + u" does not exist, and only its record leads to it",
                   "Create the file; or remove its record, and rebuild the store."};
}

std::optional<Finding> hidesSupported(const Explanation& explanation) {
    const auto answer = answerOf(explanation);
    const auto isSupported = [](const Answered& answered) { return answered.candidate->isSupported(); };
    const auto first = std::find_if(answer.begin(), answer.end(), isSupported);
    if (first == answer.begin() || first == answer.end()) {
        return std::nullopt;
    }
    const auto& candidate = *answer.front().candidate;
    const auto hidden = static_cast<std::size_t>(std::count_if(first, answer.end(), isSupported));
    return Finding{"hides-supported",
                   Level::warning,
                   explanation.name,
                   candidate.result.path,
                   first->candidate->result.path,
                   keyBetween(answer.front(), *first),
                   subject(candidate) + u" comes before " + counted(hidden, u"supported definition"),
                   "If a supported one is meant, rename the first, or take its folder off the search path."};
}

std::optional<Finding> orderOnly(const Explanation& explanation) {
    const auto answer = answerOf(explanation);
    if (answer.size() < 2 || keyBetween(answer[0], answer[1]) != Key::gathered) {
        return std::nullopt;
    }
    const auto& first = *answer[0].candidate;
    const auto& second = *answer[1].candidate;
    return Finding{"order-only",
                   Level::warning,
                   explanation.name,
                   first.result.path,
                   second.result.path,
                   Key::gathered,
                   u"only " + orderOf(first, second) + u" puts the first before the second",
                   "Keep one of the two, or see that the order is the one that is meant."};
}

std::optional<Finding> mainFinding(const Explanation& explanation, bool preferredExists) {
    auto finding = missingFile(explanation, preferredExists);
    if (!finding) {
        finding = hidesSupported(explanation);
    }
    return finding ? finding : orderOnly(explanation);
}

} // namespace tessgen::analysis
