#include "cli/Answering.hpp"
#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Names.hpp"
#include "cli/Reason.hpp"
#include "cli/Render.hpp"
#include "cli/Resolver.hpp"
#include "standalone/LineReader.hpp"

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
            tally.addAnswer(*name, !answer.candidates.empty());
            keepWanted(answer, request);
            text = request.json ? asJSONLine(answer) : asText(answer, isColoured) + "\n";
        } catch (const std::exception& error) {
            tally.addFailure();
            if (request.json) {
                text = asJSONLine(*name, reasonOf(error));
            } else {
                complainOfLine(lines.place(), reasonOf(error));
            }
        }
        writeOut(text);
    }
    return tally.exitCode();
}

} // namespace tessgen::cli
