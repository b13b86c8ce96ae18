#include "cli/explanation/ReportedNames.hpp"

#include "analysis/Answer.hpp"
#include "cli/explanation/NameAnswers.hpp"
#include "cli/output/Columns.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/services/SessionState.hpp"

#include <cstddef>
#include <utility>

namespace tessgen::cli {

namespace {

constexpr const char* builtinsOfKEL = "KEL built-ins";
constexpr const char* builtinsOfHost = "host built-ins";

} // namespace

ReportedNames::ReportedNames(const ResolverSession& resolver) : resolver_(resolver) {
    const auto& installation = standalone::currentSession().installation;
    for (const auto* folders : {&installation.searchPath, &installation.kelPath}) {
        for (const auto& folder : *folders) {
            addFolder(folder.ends_with('/') ? folder.substr(0, folder.size() - 1) : folder);
        }
    }
    addFolder(builtinsOfKEL);
    addFolder(builtinsOfHost);
}

void ReportedNames::add(const kelwhich::Explanation& explanation) {
    const auto text = inUTF8(explanation.name);
    const auto [known, isNew] = names_.try_emplace(text);
    if (!isNew) {
        return;
    }
    auto& name = known->second;
    name.name = text;
    const auto explained = explainedFrom(text, explanation, resolver_);
    for (const auto& [candidate, resolution] : analysis::answerOf(explanation)) {
        name.candidates.push_back({inUTF8(candidate->result.path), folderOf(candidate->result),
                                   candidate->isSupported(), explained.isMissing(*candidate)});
    }
    name.explanation = asText(explained, false, unlimitedColumns);
}

void ReportedNames::moveTo(Report& report) {
    for (auto& [text, name] : names_) {
        report.names.push_back(std::move(name));
    }
    report.folders = std::move(folders_);
}

std::size_t ReportedNames::addFolder(const std::string& folder) {
    const auto [known, isNew] = places_.emplace(folder, folders_.size());
    if (isNew) {
        folders_.push_back(folder);
    }
    return known->second;
}

// A file lies in the nearest folder that is known, above its package, class and private folders; else in its own.
std::size_t ReportedNames::folderOf(const kelwhich::WhichResult& result) {
    if (result.type == kelwhich::WhichResultType::KELBuiltin) {
        return places_.at(builtinsOfKEL);
    }
    if (!analysis::isFile(result.type)) {
        return places_.at(builtinsOfHost);
    }
    const auto path = inUTF8(result.path);
    for (auto end = path.rfind('/'); end != std::string::npos && end != 0; end = path.rfind('/', end - 1)) {
        if (const auto known = places_.find(path.substr(0, end)); known != places_.end()) {
            return known->second;
        }
    }
    return addFolder(path.substr(0, path.rfind('/')));
}

} // namespace tessgen::cli
