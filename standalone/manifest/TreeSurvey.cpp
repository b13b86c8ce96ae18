#include "standalone/manifest/TreeSurvey.hpp"

#include "host/Paths.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <set>
#include <system_error>
#include <utility>

namespace tessgen::standalone {

namespace {

using Kind = FileTree::Kind;
using Paths = std::set<std::u16string>; // relative to the tree, which is ""

struct Folder {
    std::string path;        // relative to the tree, which is ""
    std::u16string searched; // the search folder that finds its files
    bool isKEL = false;
    bool isWithin = false; // is a package, class or private folder, or lies in one
    bool isPrivate = false;
};

// False for methods (they need the class prefix) and for stems with a dot.
bool isFoundByItsName(const std::u16string& path) {
    const auto stem = kelwhich::fileStem(path);
    const auto classFolder = kelwhich::getClassFolderInfo(path);
    return stem.find(u'.') == std::u16string_view::npos && (!classFolder || classFolder->className == stem);
}

std::vector<std::string> toList(const Paths& paths) {
    std::vector<std::string> list;
    list.reserve(paths.size());
    for (const auto& path : paths) {
        list.push_back(path.empty() ? "." : toUTF8(path).value());
    }
    return list;
}

class Walk {
public:
    Walk(const std::string& tree, const std::vector<std::string>& kelFolders, const FileTree& files,
         const std::vector<std::string>& extensions)
        : tree_(tree), files_(files), extensions_(extensions) {
        for (const auto& folder : kelFolders) {
            kelRoots_.insert(folder == "." ? std::string() : folder);
        }
    }

    TreeSurvey run() {
        if (!kelRoots_.contains("")) {
            open_.push_back({});
        }
        for (const auto& path : kelRoots_) {
            kelFolders_.insert(toUTF16(path).value());
            open_.push_back({path, toUTF16(path).value(), true});
        }
        while (!open_.empty()) {
            const auto folder = std::move(open_.back());
            open_.pop_back();
            visit(folder);
        }
        std::sort(survey_.notUTF8.begin(), survey_.notUTF8.end());
        std::sort(survey_.unreadable.begin(), survey_.unreadable.end());
        survey_.searchFolders = toList(searchFolders_);
        survey_.kelFolders = toList(kelFolders_);
        survey_.kelFiles = toList(kelFiles_);
        const auto& toTry = fileToTry_.empty() ? kelFileToTry_ : fileToTry_;
        survey_.nameToTry = toUTF8(kelwhich::qualifiedNameForPath(u"/" + toTry)).value();
        return std::move(survey_);
    }

private:
    void visit(const Folder& folder) {
        for (const auto& entry : entriesOf(folder)) {
            const auto path = folder.path.empty() ? entry.name : joinPath(folder.path, entry.name);
            const bool isFolder = entry.kind == Kind::folder;
            if (!isFolder && !(isSourceFile(entry.name) && leadsToFile(entry, path))) {
                continue;
            }
            if (auto text = toUTF16(path); !text) {
                survey_.notUTF8.push_back(path);
            } else if (isFolder) {
                enter(folder, entry.name, path, *text);
            } else {
                take(folder, *text);
            }
        }
    }

    std::vector<FileTree::Entry> entriesOf(const Folder& folder) {
        try {
            const auto isSeen = [](std::string_view name) { return !name.starts_with('.'); };
            const auto path = folder.path.empty() ? tree_ : joinPath(tree_, folder.path);
            return files_.entries(path, {isSeen}).value_or(std::vector<FileTree::Entry>());
        } catch (const std::system_error& error) {
            if (folder.path.empty()) {
                throw;
            }
            survey_.unreadable.push_back(folder.path + ": " + error.code().message());
            return {};
        }
    }

    void enter(const Folder& above, const std::string& name, const std::string& path, const std::u16string& text) {
        if (kelRoots_.contains(path)) { // is visited by itself
            return;
        }
        if (isPackageClassOrPrivate(name)) {
            open_.push_back({path, above.searched, above.isKEL, true, name == "private" || above.isPrivate});
        } else if (!above.isWithin) {
            open_.push_back({path, text, above.isKEL});
        }
    }

    void take(const Folder& folder, const std::u16string& path) {
        if (folder.isKEL) {
            kelFiles_.insert(path);
            kelFolders_.insert(folder.searched);
        } else if (!folder.isPrivate) {
            searchFolders_.insert(folder.searched);
        }
        auto& toTry = folder.isKEL ? kelFileToTry_ : fileToTry_;
        if (!folder.isPrivate && isFoundByItsName(path) && (toTry.empty() || path < toTry)) {
            toTry = path;
        }
    }

    [[nodiscard]] bool isSourceFile(const std::string& name) const { return hasExtension(name, extensions_); }

    bool leadsToFile(const FileTree::Entry& entry, const std::string& path) {
        try {
            return entry.kind == Kind::file
                   || (entry.kind == Kind::link && files_.kindOf(joinPath(tree_, path)) == Kind::file);
        } catch (const std::system_error& error) {
            survey_.unreadable.push_back(path + ": " + error.code().message());
            return false;
        }
    }

    const std::string& tree_;
    const FileTree& files_;
    const std::vector<std::string>& extensions_;
    std::set<std::string> kelRoots_; // the tree itself is ""
    std::vector<Folder> open_;       // still to be visited
    Paths searchFolders_;
    Paths kelFolders_;
    Paths kelFiles_;
    std::u16string fileToTry_; // preferred to `kelFileToTry_`
    std::u16string kelFileToTry_;
    TreeSurvey survey_;
};

} // namespace

TreeSurvey surveyTree(const std::string& tree, const std::vector<std::string>& kelFolders, const FileTree& files,
                      const std::vector<std::string>& extensions) {
    return Walk(tree, kelFolders, files, extensions).run();
}

} // namespace tessgen::standalone
