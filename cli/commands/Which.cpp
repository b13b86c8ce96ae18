#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/options/Spelling.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Render.hpp"
#include "standalone/doctor/SpellingSuggestions.hpp"
#include "standalone/services/SessionState.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace tessgen::cli {

namespace {

// A person who completes file names on the command line may mean the file in the working folder.
void warnOfFileInWorkingFolder(const std::string& name, const Answer& answer) {
    std::error_code unknown;
    if (name.starts_with('/') || name.find('/') == std::string::npos
        || !std::filesystem::is_regular_file(name, unknown)) {
        return;
    }
    const bool isCandidate =
        std::any_of(answer.candidates.begin(), answer.candidates.end(),
                    [&](const Answer::Candidate& c) { return std::filesystem::equivalent(name, c.path, unknown); });
    if (!isCandidate) {
        reportError(fmt::format("note: '{}' also names a file in the working folder, but names are resolved below the "
                                "folders of the search path; for that file use its absolute path",
                                name));
    }
}

void warnOfMistypedCommand(const std::string& word) {
    if (const auto meant = commandsLike(word); !meant.empty()) {
        reportError(fmt::format("note: '{}' is not a command and was resolved as a name; did you mean {}?", word,
                                fmt::join(meant, " or ")));
    }
}

// For a person who mistyped a name: the most similar names that have candidates.
void addSuggestions(std::vector<Answer>& answers, const ResolverSession& resolver) {
    constexpr std::size_t most = 3; // suggestions for a name
    const auto deadline = std::chrono::steady_clock::now()
                          + environmentMilliseconds("KELWHICH_SUGGEST_MS", std::chrono::milliseconds(50));
    std::optional<standalone::SpellingSuggestions> suggestions;
    for (auto& answer : answers) {
        if (!answer.candidates.empty()) {
            continue;
        }
        if (!suggestions) {
            suggestions.emplace(standalone::currentSession(), deadline);
        }
        for (const auto& name : suggestions->similarTo(answer.query)) {
            if (answer.suggestions.size() == most || std::chrono::steady_clock::now() >= deadline) {
                break;
            }
            try {
                if (!resolver->resolve(parseName(name)).empty()) {
                    answer.suggestions.push_back(name);
                }
            } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): a name that fails is not suggested
            }
        }
    }
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
                warnOfFileInWorkingFolder(name, answer);
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
    if (outputIsTerminal() && !request.json && !request.quiet && !request.replay && !request.record) {
        addSuggestions(answers, resolver);
    }
    if (!answers.empty() && !request.quiet) {
        writeOut(rendered(answers, request));
    }
    return outcome.exitCode(request.quiet);
}

} // namespace tessgen::cli
