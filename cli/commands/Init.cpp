#include "cli/commands/Commands.hpp"
#include "cli/options/NextCommand.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "standalone/files/AtomicFile.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/manifest/ManifestFile.hpp"
#include "standalone/manifest/TreeSurvey.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tessgen::cli {

namespace {

using nlohmann::ordered_json;
using standalone::TreeSurvey;

constexpr const char* storeName = "support.cdb";
constexpr const char* recordsName = "support.jsonl";

struct OutputFiles {
    std::string manifest;
    std::string records;
};

bool isThere(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

// Without links, as the manifest's folder is resolved when it is read.
std::string realFolder(const std::string& folder) {
    std::error_code error;
    auto real = std::filesystem::canonical(folder, error).string();
    if (error) {
        throw std::runtime_error(fmt::format("{}: {}", folder, error.message()));
    }
    if (!std::filesystem::is_directory(real, error)) {
        throw std::runtime_error(folder + ": is not a folder");
    }
    if (!standalone::isUTF8(real)) {
        throw std::runtime_error(real + ": the path is not UTF-8, so a manifest there could not name its files");
    }
    return real;
}

// The folders relative to the tree, in the order given, each once.
std::vector<std::string> relativeFolders(const std::vector<std::string>& folders, const std::string& tree) {
    std::vector<std::string> relative;
    for (const auto& folder : folders) {
        if (const auto meant = standalone::joinPath(tree, folder); !isThere(folder) && isThere(meant)) {
            throw std::runtime_error(fmt::format("{}: no such folder; did you mean {}?", folder, meant));
        }
        const auto real = realFolder(folder);
        const auto above = standalone::joinPath(tree, "");
        if (real != tree && !real.starts_with(above)) {
            throw std::runtime_error(fmt::format("{}: is not below {}", folder, tree));
        }
        auto path = real == tree ? "." : real.substr(above.size());
        if (std::find(relative.begin(), relative.end(), path) == relative.end()) {
            relative.push_back(std::move(path));
        }
    }
    return relative;
}

// Such a folder would match no file: a file's package, class and private folders are removed before its folder is
// compared.
void refuseNestedFolders(const std::vector<std::string>& kelFolders) {
    for (const auto& folder : kelFolders) {
        if (standalone::isPackageClassOrPrivate(std::string_view(folder).substr(folder.rfind('/') + 1))) {
            throw std::runtime_error(folder + ": is a package, class or private folder; name the folder above it");
        }
    }
}

[[noreturn]] void refuseToReplace(const std::string& file) {
    throw std::runtime_error(file + ": already exists; use --force to replace it");
}

// What a link leads to may belong to something else, so --force does not go through links.
void refuseLink(const std::string& file) {
    std::error_code absent;
    if (std::filesystem::is_symlink(file, absent)) {
        throw std::runtime_error(file + ": is a link; remove it, and a new file is written in its place");
    }
}

void refuseIfKept(const std::string& file, bool force) {
    refuseLink(file);
    if (!force && isThere(file)) {
        refuseToReplace(file);
    }
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

// One line per KEL file, with every flag set: files of the code generator are usually supported.
std::string recordsFor(const TreeSurvey& survey) {
    std::string lines;
    for (const auto& file : survey.kelFiles) {
        const ordered_json record{{"path", file}, {"supportFlags", std::vector<bool>(6, true)}};
        lines += printJSON(record) + '\n';
    }
    return lines;
}

void reportSkipped(const TreeSurvey& survey) {
    for (const auto& path : survey.notUTF8) {
        reportError(fmt::format("skipped, its name is not UTF-8: {}", path));
    }
    for (const auto& folder : survey.unreadable) {
        reportError(fmt::format("skipped: {}", folder));
    }
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
    auto to = std::back_inserter(text);
    fmt::format_to(to, "{}: {}, ", escaped(files.manifest), counted(survey.searchFolders.size(), "search folder"));
    if (survey.kelFolders.empty()) {
        text += "no KEL folder (use --kel to name one)\n";
    } else {
        fmt::format_to(to, "{} with {}\n", counted(survey.kelFolders.size(), "KEL folder"),
                       counted(survey.kelFiles.size(), "file"));
    }
    if (request.records) {
        fmt::format_to(to, "{}: {}; every KEL file is marked as supported: edit supportFlags where that is wrong\n",
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
        fmt::format_to(to, "  kelwhich -i {} store build {}\n", shellWord(folder),
                       shellWord(standalone::joinPath(folder, recordsName)));
    }
    fmt::format_to(to, "  kelwhich -i {} {}\n", shellWord(folder), nameWord(survey.nameToTry));
    return text;
}

} // namespace

int init(const Request& request) {
    const auto tree = realFolder(request.operands.front());
    const OutputFiles files{standalone::joinPath(tree, standalone::manifestName),
                            standalone::joinPath(tree, recordsName)};
    refuseIfKept(files.manifest, request.force);
    if (request.records) {
        refuseIfKept(files.records, request.force);
    }
    const auto sourceCode = relativeFolders(request.sourceCodeFolders, tree);
    const auto kelFolders = relativeFolders(request.kelFolders, tree);
    refuseNestedFolders(kelFolders);
    const auto survey = standalone::surveyTree(tree, kelFolders, standalone::RealFileTree());
    reportSkipped(survey);
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
    if (!survey.unreadable.empty()) {
        reportError(fmt::format("{} could not be read and were left out", counted(survey.unreadable.size(), "folder")));
        return exitPartial;
    }
    return exitYes;
}

} // namespace tessgen::cli
