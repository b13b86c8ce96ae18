#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Names.hpp"
#include "cli/RenderExplanation.hpp"
#include "cli/Resolver.hpp"
#include "standalone/SessionState.hpp"

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

namespace tessgen::cli {

namespace {

Explained explained(const std::string& name, const Request& request, const Resolver& resolver) {
    Explained answer{name, resolver->explain(nameIn(name)), {}};
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
    const Resolver resolver(request);
    std::vector<Explained> all;
    Tally tally;
    for (const auto& name : request.operands) {
        try {
            all.push_back(explained(name, request, resolver));
            tally.addAnswer(name, hasCandidates(all.back().explanation));
        } catch (const std::exception& error) {
            tally.addFailure(name, error);
        }
    }
    resolver.keepRecording();
    if (!all.empty()) {
        const auto& searched = standalone::currentSession().installation.searchPath;
        writeOut(request.json ? asJSON(all, searched) : asText(all, searched, outputIsColoured()));
    }
    return tally.exitCode();
}

} // namespace tessgen::cli
