#include "cli/explanation/ExplanationWording.hpp"
#include "cli/explanation/RenderExplanation.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Findings.hpp"
#include "cli/output/Json.hpp"
#include "cli/output/Render.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

using kelwhich::Explanation;
using nlohmann::ordered_json;

// The name of `value`; `names` is in the order of the enumeration.
template <typename Value, std::size_t Size>
std::string_view named(const std::array<std::string_view, Size>& names, Value value) {
    return names.at(static_cast<std::size_t>(value));
}

constexpr std::array<std::string_view, 4> definitions = {"direct", "hostMethod", "otherName", "otherClass"};
constexpr std::array<std::string_view, 4> ownerships = {"user", "noHostFile", "sourceCode", "supportPackage"};
constexpr std::array<std::string_view, 6> supports = {"KELBuiltin", "recorded", "hostBuiltin",
                                                      "noRecord",   "noFlag",   "unsupportedName"};
constexpr std::array<std::string_view, 3> kinds = {"KELBuiltin", "KELPath", "other"};
constexpr std::array<std::string_view, 2> questions = {"supportRecords", "host"};
constexpr std::array<std::string_view, 2> dropRules = {"hostFile", "privateFolder"};
constexpr std::array<std::string_view, 4> places = {"first", "behind", "dropped", "absent"};

ordered_json listOf(const std::vector<std::u16string>& texts) {
    auto list = ordered_json::array();
    for (const auto& text : texts) {
        list.push_back(inUTF8(text));
    }
    return list;
}

ordered_json document(const kelwhich::SupportEntry& record) {
    return {{"path", inUTF8(record.path)},         {"builtin", record.isBuiltin},
            {"redirect", record.isRedirect},       {"symbol", inUTF8(record.symbol)},
            {"supportFlags", record.supportFlags}, {"unsupportedSymbols", listOf(record.unsupportedSymbols)}};
}

ordered_json document(const Explanation::Source& source) {
    return {{"question", named(questions, source.question)}, {"number", source.number}};
}

ordered_json document(const Explanation::Candidate& candidate) {
    ordered_json keys = {{"direct", candidate.isDirect()},       {"user", candidate.isUser()},
                         {"supported", candidate.isSupported()}, {"sourceFile", candidate.sourceFile},
                         {"kind", named(kinds, candidate.kind)}, {"gathered", candidate.gathered}};
    ordered_json causes = {{"definition", named(definitions, candidate.definition)},
                           {"ownership", named(ownerships, candidate.ownership)},
                           {"support", named(supports, candidate.support)}};
    if (!candidate.definedName.empty()) {
        causes["definedName"] = inUTF8(candidate.definedName);
    }
    if (!candidate.hostFolder.empty()) {
        causes["hostFolder"] = inUTF8(candidate.hostFolder);
    }
    if (candidate.record) {
        causes["record"] = document(*candidate.record);
    }
    ordered_json result = {{"rank", candidate.rank},
                           {"repeat", candidate.repeat},
                           {"kind", kindName(candidate.result.type)},
                           {"path", inUTF8(candidate.result.path)},
                           {"source", document(candidate.source)},
                           {"keys", std::move(keys)},
                           {"causes", std::move(causes)}};
    if (candidate.ahead) {
        result["aheadOfNextBy"] = keyName(*candidate.ahead);
    }
    return result;
}

ordered_json document(const Explanation::Dropped& dropped, const Explanation::Resolution& resolution) {
    ordered_json result = {{"kind", kindName(dropped.result.type)},
                           {"path", inUTF8(dropped.result.path)},
                           {"source", document(dropped.source)},
                           {"rule", named(dropRules, dropped.rule)}};
    if (const auto rank = rankAllTheSame(dropped, resolution)) {
        result["rank"] = *rank;
    }
    return result;
}

ordered_json document(const Explanation::Redirect& redirect) {
    return {{"path", inUTF8(redirect.path)},
            {"target", inUTF8(redirect.target)},
            {"honoured", redirect.isHonoured()},
            {"definition", named(definitions, redirect.definition)},
            {"definedName", inUTF8(redirect.definedName)},
            {"record", document(*redirect.record)}};
}

ordered_json document(const WhyNot::Obstacle& obstacle);

template <typename Element>
ordered_json documents(const std::vector<Element>& elements) {
    auto list = ordered_json::array();
    for (const auto& element : elements) {
        list.push_back(document(element));
    }
    return list;
}

ordered_json document(const Explanation::Resolution& resolution, const Explained& explained) {
    auto candidates = ordered_json::array();
    for (const auto& candidate : resolution.candidates) {
        candidates.push_back(document(candidate));
        if (explained.isMissing(candidate)) {
            candidates.back()["missing"] = true;
        }
    }
    auto dropped = ordered_json::array();
    for (const auto& result : resolution.dropped) {
        dropped.push_back(document(result, resolution));
    }
    return {{"name", inUTF8(resolution.name)}, {"candidates", std::move(candidates)}, {"dropped", std::move(dropped)}};
}

ordered_json document(const WhyNot::Obstacle& obstacle) {
    ordered_json result = {{"reason", obstacle.words}};
    if (obstacle.key) {
        result["key"] = keyName(*obstacle.key);
    }
    return result;
}

ordered_json document(const WhyNot& whyNot) {
    ordered_json result = {{"path", whyNot.path}, {"place", named(places, whyNot.place)}};
    if (whyNot.candidate) {
        result["candidate"] = *whyNot.candidate;
    }
    if (whyNot.rank) {
        result["rank"] = *whyNot.rank;
    }
    result["obstacles"] = documents(whyNot.obstacles);
    if (whyNot.wouldWinBy) {
        result["thenFirst"] = *whyNot.wouldWinBy;
    }
    return result;
}

} // namespace

ordered_json asJSON(const Explained& explained) {
    auto resolutions = ordered_json::array();
    for (const auto& resolution : explained.explanation.resolutions) {
        resolutions.push_back(document(resolution, explained));
    }
    ordered_json result = {{"query", explained.query},
                           {"redirects", documents(explained.explanation.redirects)},
                           {"resolutions", std::move(resolutions)}};
    if (explained.whyNot) {
        result["whyNot"] = document(*explained.whyNot);
    }
    return result;
}

std::string asJSON(std::vector<ordered_json> explanations, const std::vector<SearchedFolder>& searched) {
    auto folders = ordered_json::array();
    auto notSearched = ordered_json::array();
    for (const auto& [path, problem] : searched) {
        folders.push_back(path);
        if (!problem.empty()) {
            notSearched.push_back({{"folder", path}, {"reason", problem}});
        }
    }
    const ordered_json result{{"schema", "kelwhich/1"},
                              {"explanations", std::move(explanations)},
                              {"searched", std::move(folders)},
                              {"notSearched", std::move(notSearched)}};
    return printJSONDocument(result);
}

} // namespace tessgen::cli
