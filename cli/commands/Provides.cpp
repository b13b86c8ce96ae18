#include "cli/commands/Commands.hpp"
#include "cli/commands/Outcome.hpp"
#include "cli/explanation/ExplanationWording.hpp"
#include "cli/explanation/ReachingNames.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/options/NextCommand.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "cli/output/Render.hpp"
#include "standalone/services/SessionState.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace tessgen::cli {

namespace {

using standalone::SearchForm;

struct FormText {
    std::string_view code; // in JSON; never changes
    std::string_view words;
};

FormText textOf(SearchForm form) {
    switch (form) {
    case SearchForm::ownClass:
        return {"ownClass", "in its class folder"};
    case SearchForm::folder:
        break;
    case SearchForm::otherClasses:
        return {"otherClasses", "in the folder of a class"};
    case SearchForm::privateFolder:
        return {"privateFolder", "in a private folder"};
    case SearchForm::packageClass:
        return {"packageClass", "in the folder of a class"};
    }
    return {"folder", "in its folder"};
}

// How the name leads to the file, as one line.
std::string wordsOf(const ReachingName& reaching) {
    constexpr std::size_t most = 3; // paths that are named
    auto words = sourceWords(reaching.source);
    if (reaching.searched) {
        words.append(", ").append(textOf(*reaching.searched).words);
    }
    if (reaching.redirectedTo) {
        words = fmt::format("redirected to {}: {}", *reaching.redirectedTo, words);
    }
    for (std::size_t i = 0; i < std::min(most, reaching.before.size()); ++i) {
        words += (i == 0 ? "; after " : ", ") + reaching.before[i];
    }
    return words + (reaching.before.size() > most ? fmt::format(" and {} more", reaching.before.size() - most) : "");
}

std::string asText(const Reached& reached, const Request& request, const Style& style) {
    auto text = fmt::format("{}{}{}\n", style.name, escaped(reached.file), style.end);
    std::size_t nameWidth = 0;
    std::size_t rankWidth = 0;
    for (const auto& reaching : reached.names) {
        nameWidth = std::max(nameWidth, escaped(reaching.name).size());
        rankWidth = std::max(rankWidth, std::to_string(reaching.rank).size());
    }
    for (const auto& reaching : reached.names) {
        text += fmt::format("  {:<{}}  {:>{}}  {:<{}}  {}\n", escaped(reaching.name), nameWidth, reaching.rank,
                            rankWidth, kindWords(reaching.result.type), widestKindWords, escaped(wordsOf(reaching)));
    }
    if (reached.isMissing) {
        text += reached.names.empty() ? "  there is no such file\n"
                                      : "  there is no such file; only a record leads to it\n";
    } else if (reached.names.empty()) {
        text += fmt::format("  no plain or dotted name; for the reasons: {} explain --why-not {} NAME\n",
                            thisProgram(request), shellWord(reached.file));
    }
    if (!reached.paths.empty()) {
        text += fmt::format("  with \"/\": {}\n", escaped(fmt::format("{}", fmt::join(reached.paths, ", "))));
    }
    return text;
}

nlohmann::ordered_json asJSON(const ReachingName& reaching) {
    nlohmann::ordered_json object{{"name", reaching.name},
                                  {"rank", reaching.rank},
                                  {"kind", kindName(reaching.result.type)},
                                  {"path", inUTF8(reaching.result.path)},
                                  {"before", reaching.before}};
    if (reaching.redirectedTo) {
        object["redirectedTo"] = *reaching.redirectedTo;
    }
    if (reaching.searched) {
        object["form"] = textOf(*reaching.searched).code;
    } else {
        object["record"] = reaching.source.number;
    }
    return object;
}

nlohmann::ordered_json asJSON(const Reached& reached) {
    auto names = nlohmann::ordered_json::array();
    for (const auto& reaching : reached.names) {
        names.push_back(asJSON(reaching));
    }
    nlohmann::ordered_json object{{"file", reached.file}, {"names", std::move(names)}, {"paths", reached.paths}};
    if (reached.isMissing) {
        object["missing"] = true;
    }
    return object;
}

} // namespace

int provides(const Request& request) {
    const ResolverSession resolver(request, standalone::View::snapshot);
    const auto& session = standalone::currentSession();
    ReachingNames names(session, *resolver);
    const bool isComplete = session.snapshotSearch->isComplete();
    if (!isComplete) {
        reportNote("folders that cannot be read, or packages behind several links, may hold more names");
    }
    const auto style = outputStyle(outputIsColoured());
    std::string text;
    auto files = nlohmann::ordered_json::array();
    Outcome outcome(Outcome::files);
    for (const auto& file : request.operands) {
        try {
            const auto reached = names.find(file);
            outcome.addAnswer(file, !reached.names.empty());
            if (request.json) {
                files.push_back(asJSON(reached));
            } else {
                text += (text.empty() ? "" : "\n") + asText(reached, request, style);
            }
        } catch (const std::exception& error) {
            outcome.addFailure(file, error);
        }
    }
    if (request.json && !files.empty()) {
        text = printJSONDocument({{"schema", "kelwhich/1"}, {"files", std::move(files)}, {"complete", isComplete}});
    }
    writeOut(text);
    return outcome.exitCode();
}

} // namespace tessgen::cli
