#include "cli/explanation/NameAnswers.hpp"

#include "cli/output/Escape.hpp"

#include <utility>

namespace tessgen::cli {

Answer answerFrom(std::string query, const kelwhich::Explanation& explanation, const ResolverSession& resolver,
                  bool marksMissing) {
    Answer answer;
    answer.query = std::move(query);
    for (const auto& resolution : explanation.resolutions) {
        answer.hasLeftOut = answer.hasLeftOut || !resolution.dropped.empty();
        for (const auto& candidate : resolution.candidates) {
            if (candidate.repeat) {
                continue;
            }
            answer.candidates.push_back({inUTF8(candidate.result.path), candidate.result.type, candidate.isUser(),
                                         candidate.isSupported(), !candidate.isDirect(),
                                         marksMissing && resolver.isMissing(candidate)});
        }
    }
    return answer;
}

Explained explainedFrom(std::string query, kelwhich::Explanation explanation, const ResolverSession& resolver) {
    Explained explained{std::move(query), std::move(explanation), {}, {}, {}};
    for (const auto& resolution : explained.explanation.resolutions) {
        for (const auto& candidate : resolution.candidates) {
            if (resolver.isMissing(candidate)) {
                explained.missing.push_back(candidate.result.path);
            }
        }
    }
    return explained;
}

} // namespace tessgen::cli
