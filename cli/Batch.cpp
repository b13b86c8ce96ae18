#include "cli/Answering.hpp"
#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Render.hpp"
#include "cli/Resolver.hpp"
#include "cli/Tally.hpp"
#include "standalone/LineReader.hpp"

#include <fmt/format.h>

#include <exception>

namespace tessgen::cli {

int batch(const Request& request) {
    Resolver resolver(request);
    const bool isColoured = outputIsColoured();
    Tally tally;
    auto lines = standalone::LineReader::ofStandardInput();
    while (const auto name = lines.next()) {
        std::string text;
        try {
            resolver.forget();
            auto answer = answerTo(*name, *resolver);
            tally.add(*name, shortfallOf(answer, request.require));
            keepWanted(answer, request);
            text = request.json ? asJSONLine(answer) : asText(answer, isColoured) + "\n";
        } catch (const std::exception& error) {
            tally.addFailed();
            if (request.json) {
                text = asJSONLine(*name, error.what());
            } else {
                complain(fmt::format("{} {}", lines.place(), error.what()));
            }
        }
        writeOut(text);
    }
    return tally.judge(false);
}

} // namespace tessgen::cli
