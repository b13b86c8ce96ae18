#include "cli/lsp/Methods.hpp"

#include "analysis/Answer.hpp"
#include "analysis/Findings.hpp"
#include "cli/explanation/DeadEnds.hpp"
#include "cli/explanation/ExplanationWording.hpp"
#include "cli/explanation/NameAnswers.hpp"
#include "cli/lsp/JsonRpc.hpp"
#include "cli/lsp/NameLists.hpp"
#include "cli/lsp/Places.hpp"
#include "cli/output/Columns.hpp"
#include "cli/output/Escape.hpp"
#include "cli/reports/Report.hpp"
#include "standalone/services/SessionState.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>

namespace tessgen::cli {

namespace {

using kelwhich::Explanation;
using nlohmann::json;
using nlohmann::ordered_json;

Explanation explain(const std::string& name, ResolverSession& resolver) {
    auto explanation = resolver->explain(parseName(name));
    resolver.boundCache(name.size());
    return explanation;
}

// The preferred candidate alone: clients show several in an order of their own.
ordered_json definition(const Asked& asked) {
    const auto name = asked.documents.nameAt(asked.params);
    if (!name) {
        return nullptr;
    }
    const auto explanation = explain(name->text, asked.resolver);
    const auto answer = analysis::answerOf(explanation);
    return answer.empty() ? ordered_json(nullptr) : locationOf(*answer.front().candidate, asked.resolver);
}

// All candidates in their order.
ordered_json declaration(const Asked& asked) {
    auto locations = ordered_json::array();
    if (const auto name = asked.documents.nameAt(asked.params)) {
        const auto explanation = explain(name->text, asked.resolver);
        for (const auto& [candidate, resolution] : analysis::answerOf(explanation)) {
            if (auto location = locationOf(*candidate, asked.resolver); !location.is_null()) {
                locations.push_back(std::move(location));
            }
        }
    }
    return locations;
}

// "LEVEL: what is found [CODE]", a line each.
std::string findingLines(const Explanation& explanation, bool preferredExists) {
    Report report{"", {}, {}, workingFolder(), standalone::currentSession().installation.manifest};
    for (auto& finding : analysis::findingsOfUse(explanation, preferredExists)) {
        report.entries.push_back({std::move(finding), UsePlace()});
    }
    std::string text;
    for (const auto& reported : reported(report)) {
        const auto& finding = reported.entry->finding;
        text += fmt::format("{}: {} [{}]\n", levelName(finding.level), reported.message, finding.code);
    }
    return text;
}

// The candidates as a table, why the first comes before the second, and what is found.
std::string hoverText(const std::string& name, const Explanation& explanation, const ResolverSession& resolver) {
    const auto answer = answerFrom(name, explanation, resolver, true);
    auto text = asText(answer, false);
    const auto candidates = analysis::answerOf(explanation);
    if (candidates.size() > 1) {
        text += "\n" + orderWords(candidates[0], candidates[1]) + "\n";
    }
    const auto findings = findingLines(explanation, !answer.candidates.front().isMissing);
    return text + (findings.empty() ? "" : "\n" + findings);
}

// A block of code, which keeps the columns; its fence is longer than any in the text.
std::string inMarkdown(const std::string& text) {
    std::size_t longest = 2;
    std::size_t run = 0;
    for (const char c : text) {
        run = c == '`' ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    const std::string fence(longest + 1, '`');
    return fmt::format("{0}text\n{1}{0}\n", fence, text);
}

ordered_json hover(const Asked& asked) {
    const auto name = asked.documents.nameAt(asked.params);
    if (!name) {
        return nullptr;
    }
    const auto explanation = explain(name->text, asked.resolver);
    if (analysis::answerOf(explanation).empty()) { // most likely a word that is no name
        return nullptr;
    }
    const auto text = hoverText(name->text, explanation, asked.resolver);
    return {{"contents",
             {{"kind", asked.prefersMarkdown ? "markdown" : "plaintext"},
              {"value", asked.prefersMarkdown ? inMarkdown(text) : text}}},
            {"range", rangeOf(name->begin, name->end)}};
}

// What `kelwhich explain NAME` prints about the name.
std::string explanationOf(const std::string& name, const Asked& asked) {
    auto explained = explainedFrom(name, explain(name, asked.resolver), asked.resolver);
    if (analysis::answerOf(explained.explanation).empty()) {
        explained.notes = notesOf(DeadEnds(asked.request, asked.resolver).lookAt(name));
    }
    return asText(explained, false, unlimitedColumns);
}

ordered_json executeCommand(const Asked& asked) {
    const auto& command = textAt(asked.params, "command");
    if (command != explainCommandName) {
        throw RPCError(RPCErrorCode::invalidParams, command + ": unknown command");
    }
    const auto* const arguments = findAt(asked.params, {"arguments"});
    if (arguments == nullptr || !arguments->is_array() || arguments->size() != 1 || !arguments->front().is_string()) {
        throw RPCError(RPCErrorCode::invalidParams, "\"arguments\" is not a list of one name");
    }
    return explanationOf(arguments->front().get<std::string>(), asked);
}

struct MethodRow {
    std::string_view name;
    Method answer;
};
constexpr auto methods = std::to_array<MethodRow>({
    {"textDocument/definition", definition},
    {"textDocument/declaration", declaration},
    {"textDocument/hover", hover},
    {"textDocument/completion", completion},
    {"workspace/symbol", workspaceSymbols},
    {"workspace/executeCommand", executeCommand},
});

} // namespace

Method findMethod(std::string_view name) {
    const auto* const row =
        std::find_if(methods.begin(), methods.end(), [name](const MethodRow& method) { return method.name == name; });
    return row == methods.end() ? nullptr : row->answer;
}

} // namespace tessgen::cli
