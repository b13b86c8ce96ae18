#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Render.hpp"
#include "standalone/files/LineReader.hpp"
#include "standalone/services/SessionState.hpp"

#include <fmt/format.h>

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

    void answerAll() {
        while (answerNext()) {
        }
    }

    // Reports why it is not 0.
    [[nodiscard]] int exitCode() const { return outcome_.exitCode(); }

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

void noteIfNotWatched() {
    if (const auto why = whyNotWatched(); !why.empty()) {
        reportNote(why);
    }
}

void reportStats() {
    const auto& watched = standalone::currentSession().watched;
    if (!watched) {
        reportNote("no folder was watched");
        return;
    }
    const standalone::WatchCounts counts = watched->counts();
    const auto& [links, disks, access, limit] = counts.notWatched;
    reportNote(
        fmt::format("questions {}, folders listed at the start {} and later {}, changes lost {}, mounts changed {}",
                    counts.questions, counts.listed, counts.listedAgain, counts.lostQueues, counts.mounts));
    reportNote(
        fmt::format("looked at each time: links {}, folders of other disks {}, unreadable {}, beyond the limit {}",
                    links, disks, access, limit));
}

} // namespace

int batch(const Request& request) {
    ResolverSession resolver(request, request.live ? standalone::View::live : standalone::View::watched);
    if (isatty(STDIN_FILENO) != 0) {
        noteOnName(request, resolver);
    }
    noteIfNotWatched();
    BatchAnswering answering(request, resolver);
    answering.answerAll();
    if (request.stats) {
        reportStats();
    }
    return answering.exitCode();
}

} // namespace tessgen::cli
