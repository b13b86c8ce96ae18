// What is wrong with an installation that can be opened all the same: traps that the rules of resolution hold, and
// folders, files and records that are never answered or not as they seem to be.
//
// Threads: one at a time for one Findings.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/index/SearchIndex.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/store/SupportStore.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tessgen::standalone {

// In the order in which findings are told.
enum class Diagnostic {
    folderMissing,
    folderGivenTwice,
    builtinGivenTwice,
    kelFolderEndsWithSlash,
    kelFolderInPackage,
    kelFolderOnSearchPath,
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
    recordRefusesItself,
    redirectToNothing,
    searchIndexMissing,
    searchIndexOutdated,
};

// What is told of every finding of a trap.
struct TrapText {
    std::string_view code; // never changes
    std::string_view message;
    std::string_view advice;
};

const TrapText& textOf(Diagnostic trap);

struct Finding {
    Diagnostic trap;
    std::string place; // a manifest key, a path or a record, in UTF-8 but for what the disk holds
};

using Findings = std::vector<Finding>;

// What is looked at.
// Lifetime: all of it outlives the check.
struct DiagnosisInput {
    const Installation& installation;
    const FileTree& files;
    const SupportStore* store;                                                   // null when there is none
    std::function<std::optional<std::string>(const std::string& path)> realPath; // on the same disk as `files`
    std::function<bool(const std::u16string& name)> resolves;                    // whether a name has a candidate
    const SearchIndex* index = nullptr;                                          // null when there is none
};

// All findings, grouped by trap. A folder that cannot be read is one of them; the rest is looked at all the same.
// Errors: std::runtime_error, a store or an index that is damaged.
Findings diagnose(const DiagnosisInput& examined);

// What `diagnose` consists of; each appends what it finds.
void checkFolders(const DiagnosisInput& examined,
                  Findings& findings);                               // the manifest's, by themselves and to each other
void checkFiles(const DiagnosisInput& examined, Findings& findings); // what the search or a record can reach
void checkRecords(const DiagnosisInput& examined, Findings& findings);
void checkIndex(const DiagnosisInput& examined, Findings& findings); // whether it saves most of the listing

// What `look` gives, or nothing and a finding when the disk fails with a std::system_error.
template <typename Look>
auto readOrReport(const std::string& path, Findings& findings, Look look) -> decltype(look()) {
    try {
        return look();
    } catch (const std::system_error& error) {
        findings.push_back({Diagnostic::folderUnreadable, path + ": " + error.code().message()});
        return {};
    }
}

} // namespace tessgen::standalone
