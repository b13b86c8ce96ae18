#include "cli/commands/Answering.hpp"

#include "analysis/PreferredCandidate.hpp"
#include "cli/explanation/NameAnswers.hpp"
#include "cli/options/NextCommand.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/doctor/NotFound.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/text/PathText.hpp"
#include "tessgen/kelwhich/Explanation.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tessgen::cli {

Answer answerTo(std::string_view name, const ResolverSession& resolver, const Request& request) {
    const bool marksMissing = (!request.quiet && !request.null) || resolver.isRecorded();
    const bool isForPerson = request.action == Action::which && !request.from && outputIsTerminal();
    const auto explanation = resolver->explain(parseName(name));
    auto answer = answerFrom(std::string(name), explanation, resolver, marksMissing);
    if ((request.json || isForPerson) && !answer.candidates.empty()) {
        answer.finding = analysis::mainFinding(explanation, !answer.candidates.front().isMissing);
        if (answer.finding && !request.json) {
            answer.notes.push_back(escaped(inUTF8(answer.finding->message)) + "; "
                                   + explainCommand(request, "", answer.query));
        }
    }
    return answer;
}

void noteOnWorkingFolder(const std::string& name, const std::vector<std::string>& paths, const Request& request) {
    const bool isSymbol = name.find('/') == std::string::npos;
    std::error_code unknown;
    if (name.starts_with('/') || (isSymbol && !paths.empty()) || !std::filesystem::is_regular_file(name, unknown)) {
        return;
    }
    if (isSymbol) {
        const auto file = parseName(std::filesystem::absolute(name, unknown).string());
        const bool isSource = standalone::hasExtension(name, standalone::currentSession().installation.extensions);
        reportNote(fmt::format("'{}' is a file in the working folder, not a name{}", name,
                               isSource ? fmt::format("; a name has no extension: {} {}", thisProgram(request),
                                                      nameWord(inUTF8(standalone::definedName(file))))
                                        : ""));
    } else if (std::none_of(paths.begin(), paths.end(), [&](const std::string& path) {
                   return std::filesystem::equivalent(name, path, unknown);
               })) {
        reportNote(fmt::format("'{}' also names a file in the working folder, but names are resolved below the "
                               "folders of the search path; for that file use its absolute path",
                               name));
    }
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
            reportNote(fmt::format("'{0}' is a command; for the candidates of the name use: kelwhich -- {0}",
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
