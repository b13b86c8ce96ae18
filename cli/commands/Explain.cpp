#include "analysis/Answer.hpp"
#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/explanation/DeadEnds.hpp"
#include "cli/explanation/NameAnswers.hpp"
#include "cli/explanation/RenderExplanation.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
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
    auto answer = explainedFrom(name, resolver->explain(parseName(name)), resolver);
    if (request.whyNot) {
        answer.whyNot = whyNot(*request.whyNot, answer.explanation, resolver);
    }
    return answer;
}

// What leads on from a name without a candidate: adds the lines about it, and returns what is said once.
std::string leadOn(Explained& answer, DeadEnds& deadEnds, const Request& request) {
    noteOnWorkingFolder(answer.query, {}, request);
    if (answer.query.starts_with('/')) {
        return "";
    }
    const auto deadEnd = deadEnds.lookAt(answer.query);
    answer.notes = notesOf(deadEnd);
    return deadEnds.nextSteps(answer.query, deadEnd, false);
}

// The lines below the explanations: what was searched, and what leads on from the first name without a candidate.
std::string footer(const Request& request, const ResolverSession& resolver, const std::string& nextSteps) {
    // An absolute path is looked up as it is, without the search path.
    const auto isSearched = [](const std::string& name) { return !name.starts_with('/'); };
    if (std::none_of(request.operands.begin(), request.operands.end(), isSearched)) {
        return "";
    }
    const auto detail = request.verbose ? SearchedDetail::all : SearchedDetail::hint;
    return "\n" + searchedAsText(searchedFolders(resolver), detail, outputIsColoured()) + nextSteps;
}

} // namespace

int explain(const Request& request) {
    if (request.whyNot && !standalone::isUTF8(*request.whyNot)) {
        throw std::runtime_error("the PATH of --why-not is not UTF-8");
    }
    const ResolverSession resolver(request);
    DeadEnds deadEnds(request, resolver);
    std::string text;
    std::string nextSteps;
    std::vector<nlohmann::ordered_json> documents;
    Outcome outcome;
    for (const auto& name : request.operands) {
        try {
            auto answer = explained(name, request, resolver);
            const bool isDeadEnd = analysis::answerOf(answer.explanation).empty();
            if (isDeadEnd && !request.json && !request.record && !request.replay) {
                const auto more = leadOn(answer, deadEnds, request);
                nextSteps = nextSteps.empty() ? more : nextSteps;
            }
            if (request.json) {
                documents.push_back(asJSON(answer));
            } else {
                text += (text.empty() ? "" : "\n") + asText(answer, outputIsColoured());
            }
            outcome.addAnswer(name, !isDeadEnd);
        } catch (const std::exception& error) {
            outcome.addFailure(name, error);
        }
    }
    resolver.writeRecording();
    if (request.json && !documents.empty()) {
        writeOut(asJSON(std::move(documents), searchedFolders(resolver)));
    } else if (!text.empty()) {
        writeOut(text + footer(request, resolver, nextSteps));
    }
    return outcome.exitCode();
}

} // namespace tessgen::cli
