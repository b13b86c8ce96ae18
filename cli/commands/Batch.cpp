#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Render.hpp"
#include "standalone/files/LineReader.hpp"

#include <exception>
#include <string>
#include <string_view>
#include <unistd.h>

namespace tessgen::cli {

namespace {

using standalone::LineReader;
using standalone::LineTooLong;

class BatchAnswering {
public:
    BatchAnswering(const Request& request, ResolverSession& resolver) : request_(request), resolver_(resolver) {}

    int answerAll() {
        while (answerNext()) {
        }
        return outcome_.exitCode();
    }

private:
    bool answerNext() {
        try {
            const auto name = lines_.next();
            if (name) {
                writeOut(answerOrError(*name));
            }
            return name.has_value();
        } catch (const LineTooLong&) {
            writeOut(refuse("", LineTooLong::message));
            return true;
        }
    }

    std::string answerOrError(std::string_view name) {
        try {
            resolver_.refresh();
            auto answer = answerTo(name, resolver_, request_);
            outcome_.addAnswer(name, !answer.candidates.empty());
            applySelection(answer, request_);
            return request_.json ? asJSONLine(answer) : asText(answer, isColoured_) + "\n";
        } catch (const std::exception& error) {
            return refuse(name, errorMessage(error));
        }
    }

    // In text nothing is written for the line, but an error is reported.
    std::string refuse(std::string_view name, const std::string& message) {
        outcome_.addFailure();
        if (request_.json) {
            return asJSONLine(name, message);
        }
        reportErrorInLine(lines_.place(), message);
        return "";
    }

    const Request& request_;
    ResolverSession& resolver_;
    const bool isColoured_ = outputIsColoured();
    LineReader lines_ = LineReader::ofStandardInput();
    Outcome outcome_;
};

} // namespace

int batch(const Request& request) {
    ResolverSession resolver(request);
    if (isatty(STDIN_FILENO) != 0) {
        noteOnName(request, resolver);
    }
    return BatchAnswering(request, resolver).answerAll();
}

} // namespace tessgen::cli
