#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Progress.hpp"
#include "cli/output/Render.hpp"
#include "standalone/files/LineReader.hpp"

#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tessgen::cli {

namespace {

using standalone::LineReader;

class NamesOfFile {
public:
    NamesOfFile(const Request& request, const ResolverSession& resolver, LineReader& lines)
        : request_(request), lines_(lines), resolver_(resolver), progress_("names", lines.size()) {}

    int answerAll() {
        while (const auto line = nextLine()) {
            answer(*line);
            if (out_.size() >= blockSize) {
                flush();
            }
            if (showsProgress_) {
                progress_.show(tally_.asked(), lines_.bytes());
            }
        }
        progress_.clear();
        flush();
        resolver_.writeRecording();
        return tally_.exitCode(request_.quiet);
    }

private:
    struct Kept {
        std::string text;
        bool hasCandidates;
        std::string unmet;
    };
    static constexpr std::size_t blockSize = std::size_t{1} << 14U;
    static constexpr std::size_t mostKept = std::size_t{1} << 26U;
    // What an entry takes besides its texts: 136 to 180 bytes of the heap were measured.
    static constexpr std::size_t entrySize = 180;

    // What is answered is written before more names are waited for.
    std::optional<std::string_view> nextLine() {
        if (!out_.empty() && lines_.mayWait() && !lines_.size()) {
            flush();
        }
        return lines_.next();
    }

    void answer(std::string_view name) {
        const auto known = kept_.find(std::string(name));
        if (known != kept_.end()) {
            add(name, known->second);
            return;
        }
        try {
            auto answer = answerTo(name, *resolver_);
            Kept made{"", !answer.candidates.empty(), unmetRequirement(answer, request_.require)};
            applySelection(answer, request_);
            made.text = rendered(answer);
            add(name, made);
            if (keptBytes_ < mostKept) {
                keptBytes_ += entrySize + name.size() + made.text.size() + made.unmet.size();
                kept_.emplace(name, made); // a copy takes no more memory than its texts
            }
        } catch (const std::exception& error) {
            progress_.clear();
            reportErrorOfLine(lines_.place(), errorMessage(error));
            tally_.addFailure();
        }
    }

    std::string rendered(const Answer& answer) const {
        return request_.quiet  ? ""
               : request_.json ? asJSONLine(answer)
               : request_.null ? asPaths(answer)
                               : asText(answer, isColoured_);
    }

    void add(std::string_view name, const Kept& answered) {
        tally_.addAnswer(name, answered.hasCandidates, answered.unmet);
        const bool isText = !request_.quiet && !request_.json && !request_.null;
        out_.append(isText && hasWritten_ ? "\n" : "").append(answered.text);
        hasWritten_ = true;
    }

    void flush() {
        writeOut(out_);
        out_.clear();
    }

    const Request& request_;
    LineReader& lines_;
    const ResolverSession& resolver_;
    Progress progress_;
    const bool showsProgress_ = !outputIsTerminal(); // there, the answers show it
    const bool isColoured_ = outputIsColoured();
    Outcome tally_;
    std::string out_;
    bool hasWritten_ = false;
    // Key: the name. Kept: its answer as it is written, since nothing changes in a fixed view. Never kept: a failure.
    // Growth: until some `mostKept` bytes are held. Dropped: with the object.
    std::unordered_map<std::string, Kept> kept_;
    std::size_t keptBytes_ = 0;
};

} // namespace

int whichFrom(const Request& request) {
    refusePathsOnTerminal(request);
    auto lines = *request.from == "-" ? LineReader::ofStandardInput() : LineReader(*request.from);
    const ResolverSession resolver(request, standalone::View::snapshot);
    // Never taken down, nor used any more: the process ends next, which gives all of it back at once.
    static auto* const names = new NamesOfFile(request, resolver, lines); // NOLINT(cppcoreguidelines-owning-memory)
    return names->answerAll();
}

} // namespace tessgen::cli
