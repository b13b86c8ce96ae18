#include "standalone/doctor/Diagnosis.hpp"

#include "standalone/index/SearchIndexCheck.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace tessgen::standalone {

namespace {

// In the order of the enumeration.
constexpr auto texts = std::to_array<DiagnosticText>({
    {"folder-missing", "This folder does not exist, so nothing is found in it.",
     "Create it, correct its path, or remove it from the manifest."},
    {"search-folder-twice",
     "Both are the same folder on the disk, so it is searched twice; if the paths differ, each file is found twice.",
     "Remove the later one from searchPath."},
    {"built-in-twice", "The manifest lists this built-in twice; it is found once.",
     "Remove it from builtins, or correct its name or its class."},
    {"kel-folder-ends-with-slash",
     "KEL folders are compared as text, and no file's folder ends with \"/\", so no file counts as a KEL path file.",
     "Remove the \"/\" at its end."},
    {"kel-folder-in-package",
     "Package, class and private folders are removed from a file's path before it is compared, so no file here counts "
     "as a KEL path file.",
     "List the folder above them in kelPath."},
    {"kel-folder-on-search-path", "A file in both is found twice: as a KEL path file and as a host file.",
     "Remove the folder from searchPath or from kelPath."},
    {"folder-not-searched",
     "It holds source files, but is neither on the search path nor a KEL folder, so nothing is found in it.",
     "Add it to searchPath, or to kelPath with a record for each file; kelwhich init --update FOLDER adds all such "
     "folders."},
    {"source-folder-is-prefix",
     "A file counts as host code when its path starts with the path of a source-code folder, so this one is host code "
     "and not the user's.",
     "Rename one of the two; or, if this folder holds host code, list it under sourceCode as well."},
    {"package-root-is-prefix",
     "A file counts as a support package's when its path starts with supportPackageRoot, so this one is not the "
     "user's.",
     "Rename one of the two."},
    {"package-root-holds-root",
     "Every file of the installation counts as a support package's: none is the user's, and no record supports it.",
     "Move the support packages to a folder whose path root does not start with."},
    {"folder-unreadable", "Its contents are unknown, so a name that may need it fails with an error.",
     "Allow reading it, repair the disk, or take it out of the installation."},
    {"name-not-utf-8", "Names are UTF-8, so no name can reach it.", "Rename it."},
    {"link-dangling", "The link leads nowhere, so nothing is found there.", "Correct the link, or remove it."},
    {"extension-case", "Extensions are case-sensitive, so this is not a source file.",
     "Rename it to an extension that the manifest lists."},
    {"private-case", "Only a folder named \"private\" is a private folder, so nothing is found in this one.",
     "Rename it to private."},
    {"kel-file-without-record", "Only a record leads to a KEL path file, so no name can reach this one.",
     "Add a record for it and rebuild the store, or remove the file."},
    {"record-without-file",
     "There is no such file, nor its stand-in in the support packages; the record can still make it a candidate.",
     "Correct the record's path or remove the record, and rebuild the store."},
    {"record-in-package-root",
     "Support for a package's file is looked up under the path below root that it replaces, so this record supports "
     "nothing.",
     "Give the record the path below root, and rebuild the store."},
    {"stand-in-is-circle",
     "The support packages' stand-in for the record's file is a circle of links, so each name of the record fails.",
     "Correct the link, or remove it."},
    {"record-refuses-itself", "A name that leads to the record is one of its unsupportedSymbols.",
     "Remove the name from unsupportedSymbols, unless the file is to come last."},
    {"redirect-to-nothing", "The name that the redirect leads to has no candidate.",
     "Correct the record's symbol or remove the record, and rebuild the store."},
    {"search-index-missing",
     "The manifest names a search index that does not exist, so each question lists every folder.",
     "Run kelwhich index build, or remove searchIndex from the manifest."},
    {"search-index-outdated",
     "At least half of the folders changed after the index was built, or are missing in it, and are listed for each "
     "question.",
     "Run kelwhich index build; kelwhich index verify lists the folders."},
});
static_assert(texts.size() == diagnosticCount);

} // namespace

const DiagnosticText& textOf(Diagnostic diagnostic) {
    return texts.at(static_cast<std::size_t>(diagnostic));
}

Findings diagnose(const DiagnosisInput& input) {
    Findings findings;
    checkFolders(input, findings);
    checkFiles(input, findings);
    checkRecords(input, findings);
    checkIndex(input, findings);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& a, const Finding& b) { return a.diagnostic < b.diagnostic; });
    return findings;
}

void checkIndex(const DiagnosisInput& input, Findings& findings) {
    const auto& file = input.installation.searchIndex;
    if (file && input.index == nullptr) {
        findings.push_back({Diagnostic::searchIndexMissing, *file, *file});
    } else if (file) {
        const auto use = useOf(*input.index, input.installation);
        if (use.changed.size() * 2 >= use.folders && use.folders > 0) {
            findings.push_back(
                {Diagnostic::searchIndexOutdated,
                 *file + ": " + std::to_string(use.changed.size()) + " of " + counted(use.folders, "folder"), *file});
        }
    }
}

} // namespace tessgen::standalone
