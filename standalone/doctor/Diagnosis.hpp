// Diagnoses an installation that opens without an error: folders, files and records that no name reaches, or that count
// as something else than they seem to be.
//
// Threads: one at a time for one Findings.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/index/SearchIndex.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/store/SupportStore.hpp"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tessgen::standalone {

// In the order in which findings are reported.
enum class Diagnostic {
    folderMissing,
    folderGivenTwice,
    builtinGivenTwice,
    kelFolderEndsWithSlash,
    kelFolderInPackage,
    kelFolderOnSearchPath,
    folderNotSearched,
    sourceFolderIsPrefix,
    packageRootIsPrefix,
    packageRootHoldsRoot,
    folderUnreadable,
    nameNotUTF8,
    linkDangling,
    extensionCase,
    privateCase,
    kelFileWithoutRecord,
    recordWithoutFile,
    recordInPackageRoot,
    standInIsCircle,
    recordRefusesItself,
    redirectToNothing,
    searchIndexMissing,
    searchIndexOutdated,
};
inline constexpr std::size_t diagnosticCount = static_cast<std::size_t>(Diagnostic::searchIndexOutdated) + 1;

// What every finding of a diagnostic has in common.
struct DiagnosticText {
    std::string_view code; // never changes
    std::string_view message;
    std::string_view advice;
};

[[nodiscard]] const DiagnosticText& textOf(Diagnostic diagnostic);

struct Finding {
    Diagnostic diagnostic;
    std::string place; // a manifest key, a path or a record; UTF-8 but for names on the disk

    // The parts of `place`.
    std::string path;       // the file or folder that it is about
    std::string other = {}; // the one that it is about it with
    std::string name = {};  // that is resolved
};

using Findings = std::vector<Finding>;

// Lifetime: all of it outlives the diagnosis.
struct DiagnosisInput {
    const Installation& installation;
    const FileTree& files;
    const SupportStore* store;                                                   // may be null
    std::function<std::optional<std::string>(const std::string& path)> realPath; // on the same disk as `files`
    std::function<bool(const std::u16string& name)> resolves;                    // whether a name has a candidate
    const SearchIndex* index = nullptr;                                          // may be null
    std::function<bool(const std::string& path)> isCircle = {};                  // as isLinkCircle; may be empty
};

// All findings, grouped by diagnostic. A folder that cannot be read is a finding, and the rest is still diagnosed.
// Errors: std::runtime_error for a damaged store or index.
[[nodiscard]] Findings diagnose(const DiagnosisInput& input);

// The parts of `diagnose`. Each appends its findings.
void checkFolders(const DiagnosisInput& input, Findings& findings); // of the manifest, alone and against each other
void checkFiles(const DiagnosisInput& input, Findings& findings);   // that the search or a record can reach
void checkRecords(const DiagnosisInput& input, Findings& findings);
void checkIndex(const DiagnosisInput& input, Findings& findings); // whether it serves most folders

// The result of `read`. When that throws std::system_error: nothing, and a finding that names `path`.
template <typename Read>
auto readOrReport(const std::string& path, Findings& findings, Read read) -> decltype(read()) {
    try {
        return read();
    } catch (const std::system_error& error) {
        findings.push_back({Diagnostic::folderUnreadable, path + ": " + error.code().message(), path});
        return {};
    }
}

} // namespace tessgen::standalone
