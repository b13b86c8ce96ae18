#include "cli/commands/Answering.hpp"

#include "analysis/PreferredCandidate.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "tessgen/kelwhich/Explanation.hpp"

#include <fmt/format.h>

#include <exception>
#include <stdexcept>
#include <string>

namespace tessgen::cli {

Answer answerTo(std::string_view name, const ResolverSession& resolver, const Request& request) {
    const bool marksMissing = (!request.quiet && !request.null) || resolver.isRecorded();
    const bool isForPerson = request.action == Action::which && !request.from && outputIsTerminal();
    Answer answer{std::string(name), {}, {}, {}};
    const auto explanation = resolver->explain(parseName(name));
    for (const auto& resolution : explanation.resolutions) {
        for (const auto& candidate : resolution.candidates) {
            if (candidate.repeat) {
                continue;
            }
            answer.candidates.push_back({inUTF8(candidate.result.path), candidate.result.type, candidate.isUser(),
                                         candidate.isSupported(), !candidate.isDirect(),
                                         marksMissing && resolver.isMissing(candidate)});
        }
    }
    if ((request.json || isForPerson) && !answer.candidates.empty()) {
        answer.finding = analysis::mainFinding(explanation, !answer.candidates.front().isMissing);
    }
    return answer;
}

std::string unmetRequirement(const Answer& answer, const Requirement& requirement) {
    if (answer.candidates.empty()) {
        return "";
    }
    const auto& preferred = answer.candidates.front();
    if (requirement.user && !preferred.isUser) {
        return fmt::format("the first candidate is not the user's: {}", preferred.path);
    }
    if (requirement.supported && !preferred.isSupported) {
        return fmt::format("the first candidate is not supported: {}", preferred.path);
    }
    if (requirement.single && answer.candidates.size() > 1) {
        return fmt::format("there are {} candidates, not a single one", answer.candidates.size());
    }
    return "";
}

void applySelection(Answer& answer, const Request& request) {
    if (request.first && answer.candidates.size() > 1) {
        answer.candidates.erase(answer.candidates.begin() + 1, answer.candidates.end());
    }
}

void noteOnName(const Request& request, const ResolverSession& resolver) {
    try {
        if (!request.onlyWord.empty() && !resolver->resolve(parseName(request.onlyWord)).empty()) {
            reportError(fmt::format("note: '{0}' is a command; for the candidates of the name use: kelwhich -- {0}",
                                    request.onlyWord));
        }
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the command does its work all the same
    }
}

void noteOnName(const Request& request) {
    try {
        if (!request.onlyWord.empty()) {
            noteOnName(request, ResolverSession(request));
        }
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): there is no installation to ask
    }
}

void refusePathsOnTerminal(const Request& request) {
    if (request.null && outputIsTerminal()) {
        throw std::runtime_error("--null prints unescaped paths, which are not safe on a terminal; redirect the output "
                                 "or omit --null");
    }
}

} // namespace tessgen::cli
