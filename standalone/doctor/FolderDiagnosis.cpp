#include "standalone/doctor/Diagnosis.hpp"
#include "standalone/doctor/UnsearchedFolders.hpp"
#include "standalone/files/BoundedFileTree.hpp"
#include "standalone/text/Hash.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <set>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

namespace tessgen::standalone {

namespace {

using Kind = FileTree::Kind;

// A folder that the manifest lists.
struct GivenFolder {
    std::string place; // its key and its path
    std::string path;
};
using GivenFolders = std::vector<GivenFolder>;

std::string placeInList(const std::string& key, std::size_t index, const std::string& value) {
    return key + "[" + std::to_string(index) + "] " + value;
}

GivenFolders givenFolders(const std::string& key, const std::vector<std::string>& paths) {
    GivenFolders folders;
    for (const auto& path : paths) {
        folders.push_back({placeInList(key, folders.size(), path), path});
    }
    return folders;
}

std::string folderAbove(const std::string& path) {
    return absolutePath("..", path);
}

std::string_view lastComponent(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

bool endsWithSlash(const std::string& folder) {
    return folder.ends_with('/') && folder != "/";
}

class FolderCheck {
public:
    FolderCheck(const DiagnosisInput& input, Findings& findings)
        : input_(input), findings_(findings), search_(givenFolders("searchPath", input.installation.searchPath)),
          kel_(givenFolders("kelPath", input.installation.kelPath)),
          source_(givenFolders("sourceCode", sourceCodePaths(input.installation))) {}

    void run() {
        for (const auto* folders : {&search_, &kel_, &source_}) {
            findMissing(*folders);
        }
        findRepeats();
        findKELFoldersWithoutFiles();
        findKELFoldersOnSearchPath();
        findUnsearched();
        findPrefixes();
        findRootInPackageRoot();
    }

private:
    void report(Diagnostic diagnostic, const GivenFolder& folder) {
        findings_.push_back({diagnostic, folder.place, folder.path});
    }

    void report(Diagnostic diagnostic, const GivenFolder& folder, const GivenFolder& other) {
        findings_.push_back({diagnostic, folder.place + " and " + other.place, folder.path, other.path});
    }

    std::string realPathOf(const std::string& path) {
        return readOrReport(path, findings_, [&] { return input_.realPath(path); }).value_or(path);
    }

    void findMissing(const GivenFolders& folders) {
        for (const auto& folder : folders) {
            const auto isFolder = readOrReport(folder.path, findings_, [&] {
                return std::optional(input_.files.kindOf(folder.path) == Kind::folder);
            });
            if (isFolder == false) {
                report(Diagnostic::folderMissing, folder);
            }
        }
    }

    void findRepeats() {
        std::unordered_map<std::string, const GivenFolder*, TextHash> known;
        for (const auto& folder : search_) {
            const auto [first, isNew] = known.try_emplace(realPathOf(folder.path), &folder);
            if (!isNew) {
                report(Diagnostic::folderGivenTwice, folder, *first->second);
            }
        }
    }

    void findKELFoldersWithoutFiles() {
        for (const auto& folder : kel_) {
            if (endsWithSlash(folder.path)) {
                report(Diagnostic::kelFolderEndsWithSlash, folder);
            } else if (isPackageClassOrPrivate(lastComponent(folder.path))) {
                report(Diagnostic::kelFolderInPackage, folder);
            }
        }
    }

    // The search folder is a KEL folder, or lies in one below package, class and private folders alone.
    void findKELFoldersOnSearchPath() {
        std::unordered_map<std::string, const GivenFolder*, TextHash> kel;
        for (const auto& folder : kel_) {
            if (!endsWithSlash(folder.path)) { // no file's folder ends with a slash
                kel.try_emplace(folder.path, &folder);
                kel.try_emplace(realPathOf(folder.path), &folder);
            }
        }
        for (const auto& folder : search_) {
            for (std::string path = realPathOf(folder.path);; path = folderAbove(path)) {
                if (const auto found = kel.find(path); found != kel.end()) {
                    report(Diagnostic::kelFolderOnSearchPath, folder, *found->second);
                    break;
                }
                if (!isPackageClassOrPrivate(lastComponent(path))) {
                    break;
                }
            }
        }
    }

    void findUnsearched() {
        constexpr std::size_t most = 1'000'000; // entries: the root may be that of the disk
        std::size_t seen = 0;
        const BoundedFileTree files(input_.files, [&seen] { return ++seen <= most; });
        for (const auto& folder : readOrReport(input_.installation.root, findings_, [&] {
                 return unsearchedFolders(input_.installation, files, input_.realPath);
             })) {
            report(Diagnostic::folderNotSearched, {folder, folder});
        }
    }

    void findPrefixes() {
        std::unordered_set<std::string, TextHash> known;
        for (const auto& folder : source_) {
            known.insert(folder.path);
        }
        const auto& packages = input_.installation.supportPackageRoot;
        if (packages) {
            known.insert(*packages);
        }
        for (const auto& folder : source_) {
            findNamesThatBeginWith(folder, Diagnostic::sourceFolderIsPrefix, known);
        }
        if (packages) {
            findNamesThatBeginWith({"supportPackageRoot " + *packages, *packages}, Diagnostic::packageRootIsPrefix,
                                   known);
        }
    }

    // Reports folders and source files beside this folder whose names begin with its name. Within a folder of `known`
    // nothing is the user's anyway.
    void findNamesThatBeginWith(const GivenFolder& folder, Diagnostic diagnostic,
                                const std::unordered_set<std::string, TextHash>& known) {
        const std::string name(lastComponent(folder.path));
        const std::string above = folderAbove(folder.path);
        if (name.empty() || liesIn(known, above)) {
            return;
        }
        const auto entries = readOrReport(above, findings_, [&] {
            return input_.files.entries(above, {[&](std::string_view other) {
                                            return other.starts_with(name) && other != name && isUTF8(other);
                                        }});
        });
        std::set<std::string> found; // in the same order on every disk
        for (const auto& entry : entries.value_or(std::vector<FileTree::Entry>())) {
            const std::string path = joinPath(above, entry.name);
            if (known.contains(path)) {
                continue;
            }
            const auto kind = readOrReport(path, findings_, [&] { return input_.files.kindOf(path); });
            if (kind == Kind::folder
                || (kind == Kind::file && hasExtension(entry.name, input_.installation.extensions))) {
                found.insert(path);
            }
        }
        for (const auto& path : found) {
            report(diagnostic, {path, path}, folder);
        }
    }

    static bool liesIn(const std::unordered_set<std::string, TextHash>& folders, std::string path) {
        while (!folders.contains(path) && path != "/") {
            path = folderAbove(path);
        }
        return folders.contains(path);
    }

    void findRootInPackageRoot() {
        const auto& [packages, root] = std::tie(input_.installation.supportPackageRoot, input_.installation.root);
        if (packages && root.starts_with(*packages)) {
            report(Diagnostic::packageRootHoldsRoot, {"supportPackageRoot " + *packages, *packages},
                   {"root " + root, root});
        }
    }

    const DiagnosisInput& input_;
    Findings& findings_;
    const GivenFolders search_;
    const GivenFolders kel_;
    const GivenFolders source_;
};

void findRepeatedBuiltins(const Installation& installation, Findings& findings) {
    const auto& builtins = installation.builtins;
    std::set<std::tuple<std::u16string_view, std::u16string_view, bool>> known;
    for (std::size_t index = 0; index < builtins.size(); ++index) {
        const auto& builtin = builtins[index];
        if (!known.emplace(builtin.name, builtin.className, builtin.constructor).second) {
            const auto name = toUTF8(builtin.name).value();
            findings.push_back(
                {Diagnostic::builtinGivenTwice, placeInList("builtins", index, name), installation.manifest, {}, name});
        }
    }
}

} // namespace

void checkFolders(const DiagnosisInput& input, Findings& findings) {
    FolderCheck(input, findings).run();
    findRepeatedBuiltins(input.installation, findings);
}

} // namespace tessgen::standalone
