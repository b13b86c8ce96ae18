#include "cli/locking/Changes.hpp"

#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Findings.hpp"
#include "cli/output/Json.hpp"
#include "cli/output/Render.hpp"
#include "standalone/text/PathText.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tessgen::cli {

namespace {

using analysis::LockedName;

// Adds what changed of a name; a lock without its line has an empty one. `number` is that of the new line.
void addChanges(std::vector<NameChanges>& names, std::string_view oldLine, std::string_view newLine, std::size_t number,
                const Lock& after) {
    const auto read = [](std::string_view line) {
        return line.empty() ? LockedName() : analysis::readLockLine(line, lockSpelling);
    };
    NameChanges name{read(oldLine), read(newLine), {}, number};
    (oldLine.empty() ? name.before : name.after).name = (oldLine.empty() ? name.after : name.before).name;
    name.changes = analysis::changesOf(name.before, name.after);
    for (auto& [finding, isAboutFile, old, now] : name.changes) {
        finding.path = after.paths && isAboutFile ? after.paths->whole(finding.path) : finding.path;
    }
    if (!name.changes.empty()) {
        names.push_back(std::move(name));
    }
}

nlohmann::ordered_json candidatesOf(const LockedName& name) {
    auto list = nlohmann::ordered_json::array();
    for (const auto& candidate : name.candidates) {
        list.push_back({{"rank", list.size() + 1},
                        {"kind", kindName(candidate.kind)},
                        {"path", escapedText(candidate.path)},
                        {"user", candidate.isUser},
                        {"supported", candidate.isSupported},
                        {"indirect", candidate.isIndirect}});
        if (candidate.isMissing) {
            list.back()["missing"] = true;
        }
        if (candidate.ahead) {
            list.back()["aheadOfNextBy"] = keyName(*candidate.ahead);
        }
    }
    return list;
}

std::string jsonOf(const NameChanges& name) {
    auto findings = nlohmann::ordered_json::array();
    for (const auto& change : name.changes) {
        findings.push_back(cli::document(change.finding));
    }
    return printJSON({{"name", inUTF8(name.after.name)},
                      {"findings", std::move(findings)},
                      {"before", candidatesOf(name.before)},
                      {"after", candidatesOf(name.after)}});
}

} // namespace

std::vector<NameChanges> changesBetween(const Lock& before, const Lock& after) {
    std::vector<NameChanges> names;
    auto old = before.lines.begin();
    auto now = after.lines.begin();
    const auto hasFailed = [&](std::string_view name) {
        return std::binary_search(before.failed.begin(), before.failed.end(), name)
               || std::binary_search(after.failed.begin(), after.failed.end(), name);
    };
    while (old != before.lines.end() || now != after.lines.end()) {
        const auto oldName = old != before.lines.end() ? analysis::nameInLine(*old) : std::string_view();
        const auto newName = now != after.lines.end() ? analysis::nameInLine(*now) : std::string_view();
        const bool isOld = now == after.lines.end() || (old != before.lines.end() && oldName <= newName);
        const bool isNew = old == before.lines.end() || (now != after.lines.end() && newName <= oldName);
        const auto index = static_cast<std::size_t>(now - after.lines.begin());
        const std::string_view oldLine = isOld ? std::string_view(*old++) : "";
        const std::string_view newLine = isNew ? std::string_view(*now++) : "";
        if (oldLine != newLine && !hasFailed(isOld ? oldName : newName)) {
            addChanges(names, oldLine, newLine, isNew && !after.paths ? after.numbers[index] : 0, after);
        }
    }
    return names;
}

std::string asText(const std::vector<NameChanges>& names) {
    const auto style = outputStyle(outputIsColoured());
    std::string text;
    for (const auto& name : names) {
        for (const auto& change : name.changes) {
            text += fmt::format("{}{}{}: {}\n  before: {}\n  now:    {}\n", style.name, escapedText(name.after.name),
                                style.end, change.finding.code, escapedText(change.before), escapedText(change.after));
        }
    }
    return text;
}

std::string asJSON(const std::vector<NameChanges>& names, const Lock& before, const Lock& after) {
    auto text = fmt::format(R"({{"schema":"kelwhich/1","before":{},"after":{},"names":[)",
                            printJSONString(before.place), printJSONString(after.place));
    for (const auto& name : names) {
        text.append(&name == &names.front() ? "\n" : ",\n").append(jsonOf(name));
    }
    return text + (names.empty() ? "]}\n" : "\n]}\n");
}

Report reportOn(const std::vector<NameChanges>& names, std::string_view command, const Lock& before,
                const Lock& after) {
    const bool isFile = after.place != "-";
    Report report{command, {}, {}, workingFolder(), {}};
    report.manifest = standalone::absolutePath(isFile ? after.place : before.place, report.folder);
    report.rules.assign(analysis::changeRules.begin(), analysis::changeRules.end());
    for (const auto& name : names) {
        for (const auto& change : name.changes) {
            auto& entry = report.entries.emplace_back();
            entry.finding = change.finding;
            if (isFile && name.line != 0) {
                entry.use = UsePlace{forJSON(report.manifest), name.line, 1};
            } else if (!change.finding.path.empty()) { // else reports add the name
                entry.finding.message.insert(0, change.finding.name + u": ");
            }
        }
    }
    return report;
}

} // namespace tessgen::cli
