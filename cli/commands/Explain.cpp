#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/explanation/RenderExplanation.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/text/Text.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

Explained explained(const std::string& name, const Request& request, const ResolverSession& resolver) {
    Explained answer{name, resolver->explain(parseName(name)), {}};
    if (request.whyNot) {
        answer.whyNot = whyNot(*request.whyNot, answer.explanation, resolver);
    }
    return answer;
}

bool hasCandidates(const kelwhich::Explanation& explanation) {
    const auto& resolutions = explanation.resolutions;
    return std::any_of(resolutions.begin(), resolutions.end(), [](const auto& r) { return !r.candidates.empty(); });
}

} // namespace

int explain(const Request& request) {
    if (request.whyNot && !standalone::isUTF8(*request.whyNot)) {
        throw std::runtime_error("the PATH of --why-not is not UTF-8");
    }
    const ResolverSession resolver(request);
    const bool coloured = outputIsColoured();
    std::string text;
    std::vector<nlohmann::ordered_json> documents;
    Outcome outcome;
    for (const auto& name : request.operands) {
        try {
            const auto answer = explained(name, request, resolver);
            if (request.json) {
                documents.push_back(asJSON(answer));
            } else {
                text += asText(answer, coloured) + '\n';
            }
            outcome.addAnswer(name, hasCandidates(answer.explanation));
        } catch (const std::exception& error) {
            outcome.addFailure(name, error);
        }
    }
    resolver.writeRecording();
    const auto& searched = standalone::currentSession().installation.searchPath;
    if (request.json && !documents.empty()) {
        writeOut(asJSON(std::move(documents), searched));
    } else if (!text.empty()) {
        // An absolute path is looked up as it is, without the search path.
        const auto isSearched = [](const std::string& name) { return !name.starts_with('/'); };
        const bool any = std::any_of(request.operands.begin(), request.operands.end(), isSearched);
        if (!any) {
            text.pop_back();
        }
        writeOut(text + (any ? searchedAsText(searched, coloured) : ""));
    }
    return outcome.exitCode();
}

} // namespace tessgen::cli
