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
constexpr auto texts = std::to_array<TrapText>({
    {"folder-missing", "There is no such folder, so nothing is found in it.",
     "Make it, mend its path, or take it out of the manifest."},
    {"search-folder-twice",
     "Both are one folder on the disk, so its files are searched twice, and under two paths found twice.",
     "Take the later one out of searchPath."},
    {"built-in-twice", "The built-in is there already, and is answered once.",
     "Take it out of builtins, or mend its name or its class."},
    {"kel-folder-ends-with-slash", "Folders of KEL files are compared as text, and that of no file ends with \"/\".",
     "Take the \"/\" at its end away."},
    {"kel-folder-in-package",
     "Package, class and private folders are taken off a file's path before it is compared, so its files are no KEL "
     "path files.",
     "Name the folder above them in kelPath."},
    {"kel-folder-on-search-path", "Files in both are answered twice: as KEL path files and as host files.",
     "Take the one out of searchPath, or the other out of kelPath."},
    {"source-folder-is-prefix",
     "Host code is told by the text that its path begins with, so this folder or file counts as host code, not as a "
     "user's.",
     "Rename one of the two, or list a folder that holds host code under sourceCode as well."},
    {"package-root-is-prefix",
     "Support packages are told by the text that a path begins with, so this folder or file counts as a package's, not "
     "as a user's.",
     "Rename one of the two."},
    {"package-root-holds-root",
     "Every file of the installation counts as a support package's: none is a user's, and no record supports it.",
     "Give the support packages a folder of their own, whose path root does not begin with."},
    {"folder-unreadable", "What it holds is not known, and a name that may be there is not answered.",
     "Give the right to read it, mend the disk, or leave it out of the installation."},
    {"name-not-utf-8", "A name that is not UTF-8 cannot be asked for, so it is never found.", "Rename it."},
    {"link-dangling", "The link leads nowhere, so nothing is found there.", "Mend the link, or remove it."},
    {"extension-case", "Extensions are compared by case, so this file is not one of the host's language.",
     "Rename it to an extension that the manifest lists."},
    {"private-case", "Only a folder named \"private\" is one; nothing is looked for in this one.",
     "Rename it to private."},
    {"kel-file-without-record", "A KEL path file is found by its record alone, so this one is never answered.",
     "Give it a record and build the store anew, or remove it."},
    {"record-without-file", "Neither root nor the support packages have the file, and it may be answered all the same.",
     "Mend the record's path or take the record out, and build the store anew."},
    {"record-in-package-root",
     "Whether a package's file is supported is looked up by the path below root that it stands in for, so this record "
     "supports nothing.",
     "Give the record that path, and build the store anew."},
    {"record-refuses-itself", "A name that the record is found by is one of its unsupportedSymbols.",
     "Take the name out of unsupportedSymbols, unless the file is meant to come last."},
    {"redirect-to-nothing", "The name that the redirect leads to has no candidate.",
     "Mend the record's symbol or take the record out, and build the store anew."},
    {"search-index-missing", "The search index is not there, so every folder is listed for each question.",
     "Build it with kelwhich index build, or take searchIndex out of the manifest."},
    {"search-index-outdated",
     "Half of the folders or more changed since the search index was built, or are not in it, and are listed for each "
     "question.",
     "Build it anew with kelwhich index build; kelwhich index verify names the folders."},
});
static_assert(texts.size() == static_cast<std::size_t>(Diagnostic::searchIndexOutdated) + 1);

} // namespace

const TrapText& textOf(Diagnostic trap) {
    return texts.at(static_cast<std::size_t>(trap));
}

Findings diagnose(const DiagnosisInput& examined) {
    Findings findings;
    checkFolders(examined, findings);
    checkFiles(examined, findings);
    checkRecords(examined, findings);
    checkIndex(examined, findings);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& a, const Finding& b) { return a.trap < b.trap; });
    return findings;
}

void checkIndex(const DiagnosisInput& examined, Findings& findings) {
    const auto& file = examined.installation.searchIndex;
    if (file && examined.index == nullptr) {
        findings.push_back({Diagnostic::searchIndexMissing, *file});
    } else if (file) {
        const auto use = useOf(*examined.index, examined.installation);
        if (use.changed.size() * 2 >= use.folders && use.folders > 0) {
            findings.push_back({Diagnostic::searchIndexOutdated, *file + ": " + std::to_string(use.changed.size())
                                                                     + " of " + counted(use.folders, "folder")});
        }
    }
}

} // namespace tessgen::standalone
