#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Render.hpp"
#include "standalone/files/LineReader.hpp"

#include <exception>
#include <unistd.h>

namespace tessgen::cli {

int batch(const Request& request) {
    ResolverSession resolver(request);
    const bool isColoured = outputIsColoured();
    if (isatty(STDIN_FILENO) != 0) {
        noteOnName(request, resolver);
    }
    Outcome outcome;
    auto lines = standalone::LineReader::ofStandardInput();
    while (const auto name = lines.next()) {
        std::string text;
        try {
            resolver.refresh();
            auto answer = answerTo(*name, resolver, request);
            outcome.addAnswer(*name, !answer.candidates.empty());
            applySelection(answer, request);
            text = request.json ? asJSONLine(answer) : asText(answer, isColoured) + "\n";
        } catch (const std::exception& error) {
            outcome.addFailure();
            if (request.json) {
                text = asJSONLine(*name, errorMessage(error));
            } else {
                reportErrorInLine(lines.place(), errorMessage(error));
            }
        }
        writeOut(text);
    }
    return outcome.exitCode();
}

} // namespace tessgen::cli
