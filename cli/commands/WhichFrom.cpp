#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Progress.hpp"
#include "cli/output/Render.hpp"
#include "standalone/files/LineReader.hpp"
#include "standalone/text/Hash.hpp"

#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tessgen::cli {

namespace {

using standalone::LineReader;
using standalone::LineTooLong;

class FileAnswering {
public:
    FileAnswering(const Request& request, ResolverSession& resolver, LineReader& lines, Progress& progress)
        : request_(request), lines_(lines), resolver_(resolver), progress_(progress) {}

    int answerAll() {
        while (answerNext()) {
            if (out_.size() >= blockSize) {
                flush();
            }
            if (showsProgress_) {
                progress_.show(outcome_.asked(), lines_.bytes());
            }
        }
        progress_.clear();
        flush();
        resolver_.writeRecording();
        return outcome_.exitCode(request_.quiet);
    }

private:
    struct CachedAnswer {
        std::string text;
        bool hasCandidates;
        std::string unmet;
    };
    static constexpr std::size_t blockSize = std::size_t{1} << 14U;
    static constexpr std::size_t cacheLimit = std::size_t{1} << 26U; // bytes

    bool answerNext() {
        try {
            const auto line = nextLine();
            if (line) {
                answer(*line);
            }
            return line.has_value();
        } catch (const LineTooLong&) {
            addFailure(LineTooLong::message);
            return true;
        }
    }

    // Writes what is answered before it may wait for more names.
    std::optional<std::string_view> nextLine() {
        if (!out_.empty() && lines_.mayWait() && !lines_.size()) {
            flush();
        }
        return lines_.next();
    }

    void answer(std::string_view name) {
        const auto known = cache_.find(std::string(name));
        if (known != cache_.end()) {
            add(name, known->second);
            return;
        }
        try {
            auto answer = answerTo(name, resolver_, request_);
            CachedAnswer made{"", !answer.candidates.empty(), unmetRequirement(answer, request_.require)};
            applySelection(answer, request_);
            made.text = rendered(answer);
            add(name, made);
            resolver_.boundCache(name.size() + made.text.size());
            if (cachedBytes_ < cacheLimit) {
                cachedBytes_ += ResolverSession::cacheEntrySize + name.size() + made.text.size() + made.unmet.size();
                cache_.emplace(name, made); // copied, since a copy has no spare capacity
            }
        } catch (const std::exception& error) {
            addFailure(errorMessage(error));
            resolver_.boundCache(name.size());
        }
    }

    void addFailure(std::string_view message) {
        progress_.clear();
        reportErrorInLine(lines_.place(), message);
        outcome_.addFailure();
    }

    std::string rendered(const Answer& answer) const {
        return request_.quiet  ? ""
               : request_.json ? asJSONLine(answer)
               : request_.null ? asPaths(answer)
                               : asText(answer, isColoured_);
    }

    void add(std::string_view name, const CachedAnswer& answer) {
        outcome_.addAnswer(name, answer.hasCandidates, answer.unmet);
        const bool isText = !request_.quiet && !request_.json && !request_.null;
        out_.append(isText && hasWritten_ ? "\n" : "").append(answer.text);
        hasWritten_ = true;
    }

    void flush() {
        writeOut(out_);
        out_.clear();
    }

    const Request& request_;
    LineReader& lines_;
    ResolverSession& resolver_;
    Progress& progress_;
    const bool showsProgress_ = !outputIsTerminal(); // on a terminal the answers themselves show it
    const bool isColoured_ = outputIsColoured();
    Outcome outcome_;
    std::string out_;
    bool hasWritten_ = false;
    // From a name to its printed answer, which cannot change in a snapshot. Failures are not cached. Grows until about
    // `cacheLimit` bytes are held.
    std::unordered_map<std::string, CachedAnswer, standalone::TextHash> cache_;
    std::size_t cachedBytes_ = 0;
};

} // namespace

int whichFrom(const Request& request) {
    refusePathsOnTerminal(request);
    auto lines = LineReader::ofInput(*request.from, request.null ? '\0' : '\n');
    ResolverSession resolver(request, standalone::View::snapshot);
    Progress progress("names", lines.size()); // removed also when answering fails, unlike what is kept
    return keepUntilExit(std::make_unique<FileAnswering>(request, resolver, lines, progress)).answerAll();
}

} // namespace tessgen::cli
