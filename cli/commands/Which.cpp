#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/explanation/DeadEnds.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/options/Spelling.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Render.hpp"

#include <fmt/format.h>

#include <exception>
#include <string>
#include <vector>

namespace tessgen::cli {

namespace {

void warnOfMistypedCommand(const std::string& word) {
    if (const auto meant = commandsLike(word); !meant.empty()) {
        reportNote(fmt::format("'{}' is not a command and was resolved as a name; did you mean {}?", word,
                               fmt::join(meant, " or ")));
    }
}

// For a person: what leads on from the names without a candidate. Adds to their answers, and returns what is said once.
std::string leadOn(std::vector<Answer>& answers, const Request& request, const ResolverSession& resolver) {
    DeadEnds deadEnds(request, resolver);
    std::string text;
    for (auto& answer : answers) {
        if (!answer.candidates.empty()) {
            continue;
        }
        const auto deadEnd = deadEnds.lookAt(answer.query);
        answer.suggestion = suggestionWords(deadEnd);
        answer.notes = linesOf(deadEnd);
        if (text.empty() && !answer.query.starts_with('/')) {
            text = "\n" + searchedAsText(searchedFolders(resolver), SearchedDetail::problems, outputIsColoured())
                   + deadEnds.nextSteps(answer.query, deadEnd, answer.hasLeftOut);
        }
    }
    return text;
}

std::string rendered(const std::vector<Answer>& answers, const Request& request) {
    if (request.json) {
        return asJSON(answers);
    }
    if (!request.null) {
        return asText(answers, outputIsColoured());
    }
    std::string paths;
    for (const auto& answer : answers) {
        paths += asPaths(answer);
    }
    return paths;
}

} // namespace

int which(const Request& request) {
    refusePathsOnTerminal(request);
    const ResolverSession resolver(request);
    Outcome outcome;
    std::vector<Answer> answers;
    for (const auto& name : request.operands) {
        try {
            auto answer = answerTo(name, resolver, request);
            outcome.addAnswer(name, !answer.candidates.empty(), unmetRequirement(answer, request.require));
            if (!request.quiet && !request.replay) {
                std::vector<std::string> paths;
                for (const auto& candidate : answer.candidates) {
                    paths.push_back(candidate.path);
                }
                noteOnWorkingFolder(name, paths, request);
            }
            applySelection(answer, request);
            answers.push_back(std::move(answer));
        } catch (const std::exception& error) {
            outcome.addFailure(name, error);
        }
    }
    if (request.mayMeanCommand && !request.quiet && !answers.empty() && answers.front().candidates.empty()
        && answers.front().query == request.operands.front()) {
        warnOfMistypedCommand(answers.front().query);
    }
    resolver.writeRecording();
    std::string nextSteps;
    if (outputIsTerminal() && !request.json && !request.quiet && !request.replay && !request.record) {
        nextSteps = leadOn(answers, request, resolver);
    }
    if (!answers.empty() && !request.quiet) {
        writeOut(rendered(answers, request) + nextSteps);
    }
    return outcome.exitCode(request.quiet);
}

} // namespace tessgen::cli
