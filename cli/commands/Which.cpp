#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/installation/ResolverSession.hpp"
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

// A person who completes file names on the command line may mean the file that is there, not a part of a path.
void noteFileOfWorkingFolder(const std::string& name, const Answer& answer) {
    std::error_code unknown;
    if (name.starts_with('/') || name.find('/') == std::string::npos
        || !std::filesystem::is_regular_file(name, unknown)) {
        return;
    }
    const bool isAnswered =
        std::any_of(answer.candidates.begin(), answer.candidates.end(),
                    [&](const Answer::Candidate& c) { return std::filesystem::equivalent(name, c.path, unknown); });
    if (!isAnswered) {
        reportError(
            fmt::format("note: '{0}' is a file of the working folder too, but was looked for below the folders of "
                        "the search path; for that file ask with its absolute path",
                        name));
    }
}

// For a person who mistyped a name: the names nearest to it that have candidates.
void addNearNames(std::vector<Answer>& answers, const ResolverSession& resolver) {
    constexpr std::size_t most = 3;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
    std::optional<standalone::SpellingSuggestions> suggestions;
    for (auto& answer : answers) {
        if (!answer.candidates.empty()) {
            continue;
        }
        if (!suggestions) {
            suggestions.emplace(standalone::currentSession(), deadline);
        }
        for (const auto& name : suggestions->similarTo(answer.query)) {
            if (answer.near.size() == most || std::chrono::steady_clock::now() >= deadline) {
                break;
            }
            try {
                if (!resolver->resolve(nameIn(name)).empty()) {
                    answer.near.push_back(name);
                }
            } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): such a name is none to be offered
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
    Outcome tally;
    std::vector<Answer> answers;
    for (const auto& name : request.operands) {
        try {
            auto answer = answerTo(name, *resolver);
            tally.addAnswer(name, !answer.candidates.empty(), unmetRequirement(answer, request.require));
            if (!request.quiet && !request.replay) {
                noteFileOfWorkingFolder(name, answer);
            }
            applySelection(answer, request);
            answers.push_back(std::move(answer));
        } catch (const std::exception& error) {
            tally.addFailure(name, error);
        }
    }
    resolver.writeRecording();
    if (outputIsTerminal() && !request.json && !request.quiet && !request.replay && !request.record) {
        addNearNames(answers, resolver);
    }
    if (!answers.empty() && !request.quiet) {
        writeOut(rendered(answers, request));
    }
    return tally.exitCode(request.quiet);
}

} // namespace tessgen::cli
