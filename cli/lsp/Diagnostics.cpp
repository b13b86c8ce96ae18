#include "cli/lsp/Diagnostics.hpp"

#include "cli/checking/Checking.hpp"
#include "cli/explanation/GivenPath.hpp"
#include "cli/lsp/Places.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "cli/reports/Report.hpp"
#include "standalone/services/SessionState.hpp"

#include <stdexcept>
#include <utility>

namespace tessgen::cli {

namespace {

using nlohmann::ordered_json;

constexpr const char* source = "kelwhich";

// Error and Warning, and Hint for a note, which needs no attention.
int severityOf(analysis::Level level) {
    return level == analysis::Level::error ? 1 : level == analysis::Level::warning ? 2 : 4;
}

ordered_json diagnosticOf(const ReportedFinding& reported, bool showsRelated) {
    const auto& finding = reported.entry->finding;
    ordered_json diagnostic{{"severity", severityOf(finding.level)},
                            {"code", finding.code},
                            {"source", source},
                            {"message", reported.text}};
    if (showsRelated && finding.other.starts_with(u'/')) {
        const auto other = inUTF8(finding.other);
        diagnostic["relatedInformation"] =
            ordered_json::array({{{"location", locationOf(other)}, {"message", escaped(reported.others.back().text)}}});
    }
    return diagnostic;
}

// What kept the definition from being checked.
ordered_json failure(const std::string& cause) {
    return {{"severity", severityOf(analysis::Level::error)}, {"source", source}, {"message", escaped(cause)}};
}

} // namespace

ordered_json Diagnostics::check(const Document& document, ResolverSession& resolver) const {
    auto found = ordered_json::array();
    const auto& session = standalone::currentSession();
    if (!document.path || !isSourceFile(*document.path, session.installation)) {
        return found;
    }
    try {
        const bool isThere = session.files.kindOf(*document.path) == standalone::FileTree::Kind::file;
        if (!isThere && !document.isNew) {
            return found;
        }
        const auto files = isThere ? sourceFilesBelow({*document.path}, session)
                                   : SourceFiles{{absolute(asSearched(*document.path, session))}, {}, {}};
        auto checked = checkAll(files.paths, {}, session, resolver, nullptr);
        checked.skipped.insert(checked.skipped.end(), files.skipped.begin(), files.skipped.end());
        const Report report{"check", {}, std::move(checked.entries), workingFolder(), session.installation.manifest};
        for (const auto& entry : reported(report)) {
            found.push_back(diagnosticOf(entry, showsRelated));
        }
        for (const auto& skipped : checked.skipped) {
            found.push_back(failure(skipped.cause));
        }
    } catch (const std::runtime_error& error) {
        found.push_back(failure(errorMessage(error)));
    }
    return found;
}

void Diagnostics::publish(ordered_json params) {
    send_(notification("textDocument/publishDiagnostics", std::move(params)));
}

void Diagnostics::clearClosed(const Documents& documents) {
    std::erase_if(checked_, [&](const auto& entry) {
        const bool isClosed = !documents.all().contains(entry.first);
        if (isClosed && !entry.second.found.empty()) {
            publish({{"uri", entry.first}, {"diagnostics", ordered_json::array()}});
        }
        return isClosed;
    });
}

void Diagnostics::update(const Documents& documents, ResolverSession& resolver, bool onlyNew) {
    for (const auto& [uri, document] : documents.all()) {
        const auto [known, isNew] = checked_.try_emplace(uri);
        auto& state = known->second;
        if (isNew || !onlyNew) {
            state.found = check(document, resolver);
        }
        auto list = ordered_json::array();
        const auto end = endOfLine(document.text, 0);
        const auto range = rangeOf({}, positionOf(document.text, end, documents.encoding));
        for (const auto& found : state.found) {
            list.push_back({{"range", range}});
            list.back().update(found);
        }
        ordered_json params{{"uri", uri}, {"diagnostics", std::move(list)}};
        if (auto text = printJSON(params); text != state.published) {
            state.published = std::move(text);
            params["version"] = document.version;
            publish(std::move(params));
        }
    }
}

} // namespace tessgen::cli
