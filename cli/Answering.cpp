#include "cli/Answering.hpp"

#include "cli/Console.hpp"
#include "standalone/Text.hpp"
#include "tessgen/kelwhich/Explanation.hpp"

#include <stdexcept>
#include <string>
#include <utility>

namespace tessgen::cli {

Answer answerTo(std::string_view name, const kelwhich::KELWhichResolver& resolver) {
    if (name.empty()) {
        throw std::runtime_error("refused, a name cannot be empty");
    }
    if (name.find('\0') != std::string_view::npos) {
        throw std::runtime_error("refused, a name cannot hold a NUL");
    }
    const auto text = standalone::toUTF16(name);
    if (!text) {
        throw std::runtime_error("refused, this is not UTF-8");
    }
    Answer answer{std::string(name), {}, {}};
    for (const auto& resolution : resolver.explain(*text).resolutions) {
        for (const auto& candidate : resolution.candidates) {
            if (candidate.repeat) {
                continue;
            }
            auto path = standalone::toUTF8(candidate.result.path);
            if (!path) {
                throw std::runtime_error("the path of a candidate is not UTF-16");
            }
            answer.candidates.push_back({std::move(*path), candidate.result.type, candidate.isUser(),
                                         candidate.isSupported(), !candidate.isDirect()});
        }
    }
    return answer;
}

void keepWanted(Answer& answer, const Request& request) {
    if (request.first && answer.candidates.size() > 1) {
        answer.candidates.erase(answer.candidates.begin() + 1, answer.candidates.end());
    }
}

void refusePathsOnTerminal(const Request& request) {
    if (request.null && outputIsTerminal()) {
        throw std::runtime_error("--null writes paths as they are, which is not for a terminal: pass them on to a "
                                 "program or a file, or leave out --null");
    }
}

} // namespace tessgen::cli
