#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/explanation/RenderExplanation.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/files/FileTree.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/text/Text.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

Explained explained(const std::string& name, const Request& request, const ResolverSession& resolver) {
    Explained answer{name, resolver->explain(parseName(name)), {}, {}};
    for (const auto& resolution : answer.explanation.resolutions) {
        for (const auto& candidate : resolution.candidates) {
            if (resolver.isMissing(candidate)) {
                answer.missing.push_back(candidate.result.path);
            }
        }
    }
    if (request.whyNot) {
        answer.whyNot = whyNot(*request.whyNot, answer.explanation, resolver);
    }
    return answer;
}

bool hasCandidates(const kelwhich::Explanation& explanation) {
    const auto& resolutions = explanation.resolutions;
    return std::any_of(resolutions.begin(), resolutions.end(), [](const auto& r) { return !r.candidates.empty(); });
}

// The search path, with what is wrong with its folders now; a recording does not know that.
std::vector<SearchedFolder> searchedFolders(const ResolverSession& resolver) {
    const auto& session = standalone::currentSession();
    std::vector<SearchedFolder> searched;
    for (const auto& path : session.installation.searchPath) {
        searched.push_back({path});
        if (!resolver.isReplayed()) {
            try {
                const auto kind = session.disk.kindOf(path);
                searched.back().problem = !kind                                        ? "absent"
                                          : kind != standalone::FileTree::Kind::folder ? "notAFolder"
                                                                                       : "";
                static_cast<void>(session.disk.entries(path, {[](std::string_view) { return false; }}));
            } catch (const std::system_error&) {
                searched.back().problem = "unreadable";
            }
        }
    }
    return searched;
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
    if (request.json && !documents.empty()) {
        writeOut(asJSON(std::move(documents), searchedFolders(resolver)));
    } else if (!text.empty()) {
        // An absolute path is looked up as it is, without the search path.
        const auto isSearched = [](const std::string& name) { return !name.starts_with('/'); };
        const bool any = std::any_of(request.operands.begin(), request.operands.end(), isSearched);
        if (!any) {
            text.pop_back();
        }
        writeOut(text + (any ? searchedAsText(searchedFolders(resolver), request.verbose, coloured) : ""));
    }
    return outcome.exitCode();
}

} // namespace tessgen::cli
