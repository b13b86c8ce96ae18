#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Names.hpp"
#include "cli/Render.hpp"
#include "cli/Resolver.hpp"

#include <exception>
#include <string>
#include <vector>

namespace tessgen::cli {

namespace {

Answer answerTo(const std::string& name, const Resolver& resolver) {
    Answer answer{name, {}};
    for (const auto& result : resolver->resolve(nameIn(name))) {
        answer.candidates.push_back({inUTF8(result.path), result.type});
    }
    return answer;
}

} // namespace

int which(const Request& request) {
    const Resolver resolver(request);
    std::vector<Answer> answers;
    Tally tally;
    for (const auto& name : request.operands) {
        try {
            answers.push_back(answerTo(name, resolver));
            tally.addAnswer(name, !answers.back().candidates.empty());
        } catch (const std::exception& error) {
            tally.addFailure(name, error);
        }
    }
    resolver.keepRecording();
    if (!answers.empty()) {
        writeOut(request.json ? asJSON(answers) : asText(answers, outputIsColoured()));
    }
    return tally.exitCode();
}

} // namespace tessgen::cli
