#include "cli/commands/Commands.hpp"
#include "cli/commands/InitTree.hpp"
#include "cli/options/NextCommand.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "standalone/files/AtomicFile.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/manifest/ManifestFile.hpp"
#include "standalone/manifest/TreeSurvey.hpp"
#include "standalone/text/PathText.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tessgen::cli {

namespace {

using nlohmann::ordered_json;
using standalone::TreeSurvey;

struct OutputFiles {
    std::string manifest;
    std::string records;
};

[[noreturn]] void refuseToReplace(const std::string& file) {
    throw std::runtime_error(file + ": already exists; use --update to add what is new, or --force to replace it");
}

void refuseIfKept(const std::string& file, bool force) {
    refuseLink(file);
    if (!force && isThere(file)) {
        refuseToReplace(file);
    }
}

std::string recordsFor(const TreeSurvey& survey) {
    std::string lines;
    for (const auto& file : survey.kelFiles) {
        lines += recordLine(file);
    }
    return lines;
}

std::string manifestFor(const TreeSurvey& survey, const std::vector<std::string>& sourceCode, bool hasRecords) {
    auto manifest = ordered_json::object();
    if (hasRecords) {
        manifest["supportStore"] = storeName;
    }
    manifest["searchPath"] = survey.searchFolders;
    manifest["kelPath"] = survey.kelFolders;
    manifest["sourceCode"] = sourceCode;
    return printJSONDocument(manifest);
}

void commit(standalone::AtomicFile& output, const std::string& file, bool force) {
    if (force) {
        refuseLink(file); // it may have appeared since
        output.commit();
    } else if (!output.commitIfAbsent()) {
        refuseToReplace(file);
    }
}

// Both files are complete before the first is committed. The manifest is first, since records are useless without it.
void writeFiles(const OutputFiles& files, const std::string& manifest, const std::optional<std::string>& records,
                bool force) {
    standalone::AtomicFile newManifest(files.manifest, standalone::anyFile);
    newManifest.append(manifest);
    std::optional<standalone::AtomicFile> newRecords;
    if (records) {
        newRecords.emplace(files.records, standalone::anyFile).append(*records);
    }
    commit(newManifest, files.manifest, force);
    if (newRecords) {
        commit(*newRecords, files.records, force);
    }
}

std::string summary(const OutputFiles& files, const TreeSurvey& survey, const Request& request) {
    std::string text;
    text += fmt::format("{}: {}, ", escaped(files.manifest), counted(survey.searchFolders.size(), "search folder"));
    if (survey.kelFolders.empty()) {
        text += "no KEL folder (use --kel to name one)\n";
    } else {
        text += fmt::format("{} with {}\n", counted(survey.kelFolders.size(), "KEL folder"),
                            counted(survey.kelFiles.size(), "file"));
    }
    if (request.records) {
        text += fmt::format("{}: {}; every KEL file is marked as supported: edit supportFlags where that is wrong\n",
                            escaped(files.records), counted(survey.kelFiles.size(), "record"));
    } else if (!survey.kelFiles.empty()) {
        text += "KEL files are found by their support records; use --records to write a first version\n";
    }
    const auto& operand = request.operands.front();
    const auto folder = operand.starts_with('-') ? "./" + operand : operand;
    if (!request.records && survey.searchFolders.empty()) {
        return text; // no name can be resolved yet
    }
    text += "next:\n";
    if (request.records) {
        text += fmt::format("  kelwhich -i {} store build {}\n", shellWord(folder),
                            shellWord(standalone::joinPath(folder, recordsName)));
    }
    text += fmt::format("  kelwhich -i {} {}\n", shellWord(folder), nameWord(survey.nameToTry));
    return text;
}

} // namespace

int init(const Request& request) {
    if (request.update) {
        return updateInstallation(request);
    }
    const auto tree = realFolder(request.operands.front());
    const OutputFiles files{standalone::joinPath(tree, standalone::manifestName),
                            standalone::joinPath(tree, recordsName)};
    refuseIfKept(files.manifest, request.force);
    if (request.records) {
        refuseIfKept(files.records, request.force);
    }
    const auto sourceCode = relativeFolders(request.sourceCodeFolders, tree);
    const auto kelFolders = relativeKELFolders(request.kelFolders, tree);
    const auto survey = standalone::surveyTree(tree, kelFolders, standalone::RealFileTree());
    reportSkipped(survey.notUTF8, survey.unreadable);
    if (survey.searchFolders.empty() && survey.kelFiles.empty() && !survey.unreadable.empty()) {
        throw std::runtime_error(fmt::format("{}: its contents could not be read; nothing is written", tree));
    }
    if (request.records && survey.kelFiles.empty()) {
        throw std::runtime_error("--records: there is no KEL file; name a folder of KEL files with --kel");
    }
    if (survey.searchFolders.empty() && survey.kelFiles.empty()) {
        reportError(
            fmt::format("{}: holds no source file (.vk, .vkx) that a name can reach; nothing is written", tree));
        return exitNo;
    }
    writeFiles(files, manifestFor(survey, sourceCode, request.records),
               request.records ? std::optional(recordsFor(survey)) : std::nullopt, request.force);
    writeOut(summary(files, survey, request));
    return exitCodeFor(survey.unreadable);
}

} // namespace tessgen::cli
