#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Manifest.hpp"
#include "cli/Render.hpp"
#include "standalone/Session.hpp"
#include "standalone/Text.hpp"
#include "tessgen/kelwhich/kelwhich.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

Answer answerTo(const std::string& name) {
    if (name.empty()) {
        throw std::runtime_error("refused, a name cannot be empty");
    }
    const auto text = standalone::toUTF16(name);
    if (!text) {
        throw std::runtime_error("refused, this is not UTF-8");
    }
    Answer answer{name, {}};
    for (const auto& result : kelwhich::kelwhich(*text)) {
        auto path = standalone::toUTF8(result.path);
        if (!path) {
            throw std::runtime_error("the path of a candidate is not UTF-16");
        }
        answer.candidates.push_back({std::move(*path), result.type});
    }
    return answer;
}

// The exit code, after a line that says why when it is not 0.
int judge(const std::vector<Answer>& answers, std::size_t asked) {
    if (answers.size() < asked) {
        if (asked > 1) {
            complain(fmt::format("{} of {} names not answered", asked - answers.size(), asked));
        }
        return answers.empty() ? exitNothing : exitPartly;
    }
    const auto isEmpty = [](const Answer& answer) { return answer.candidates.empty(); };
    const auto empty = std::count_if(answers.begin(), answers.end(), isEmpty);
    if (empty == 0) {
        return exitYes;
    }
    complain(empty == 1
                 ? fmt::format("no candidate for '{}'", std::find_if(answers.begin(), answers.end(), isEmpty)->query)
                 : fmt::format("no candidate for {} of {} names", empty, asked));
    return exitNo;
}

} // namespace

int which(const Request& request) {
    const standalone::Session session(findManifest(request));
    std::vector<Answer> answers;
    for (const auto& name : request.operands) {
        try {
            answers.push_back(answerTo(name));
        } catch (const std::exception& error) {
            complain(fmt::format("'{}': {}", name, reasonOf(error)));
        }
    }
    if (!answers.empty()) {
        writeOut(request.json ? asJSON(answers) : asText(answers, outputIsColoured()));
    }
    return judge(answers, request.operands.size());
}

} // namespace tessgen::cli
