#include "standalone/manifest/InstallationNews.hpp"

#include "standalone/manifest/TreeSurvey.hpp"
#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace tessgen::standalone {

namespace {

// The rest of `path` below `folder`, "." for the folder itself; nothing when it does not lie there.
std::optional<std::string> below(const std::string& folder, const std::string& path) {
    const auto above = joinPath(folder, "");
    return path == folder            ? std::optional<std::string>(".")
           : path.starts_with(above) ? std::optional(path.substr(above.size()))
                                     : std::nullopt;
}

class NewsFinder {
public:
    using RealPath = std::function<std::optional<std::string>(const std::string& path)>;

    NewsFinder(const std::string& tree, const Installation& installation, const FileTree& files,
               const RealPath& realPath)
        : tree_(tree), installation_(installation), files_(files), realPath_(realPath) {
        for (const auto& folder : installation_.searchPath) {
            known_.insert(real(folder));
        }
        for (const auto& folder : installation_.kelPath) {
            if (!folder.ends_with('/')) { // such a folder holds no KEL file
                kel_.emplace_back(real(folder), folder);
                known_.insert(kel_.back().first);
            }
        }
    }

    InstallationNews find(std::vector<std::string> kelFolders, const std::set<std::string>& recorded) {
        for (const auto& [path, written] : kel_) {
            if (auto relative = below(tree_, path); relative && files_.kindOf(path) == FileTree::Kind::folder) {
                kelFolders.push_back(*std::move(relative));
            }
        }
        auto survey = surveyTree(tree_, kelFolders, files_, installation_.extensions);
        InstallationNews news;
        for (const auto& folder : survey.searchFolders) {
            addNew(inTree(folder), isPackaged(inTree(folder)), news.searchFolders);
        }
        for (const auto& folder : survey.kelFolders) {
            addNew(inTree(folder), false, news.kelFolders);
        }
        for (const auto& file : survey.kelFiles) {
            if (const auto path = recordedPath(written(inTree(file))); !recorded.contains(path)) {
                news.kelFiles.push_back(relativeToRoot(path));
            }
        }
        news.notUTF8 = std::move(survey.notUTF8);
        news.unreadable = std::move(survey.unreadable);
        return news;
    }

private:
    [[nodiscard]] std::string real(const std::string& path) const { return realPath_(path).value_or(path); }

    [[nodiscard]] std::string inTree(const std::string& path) const {
        return path == "." ? tree_ : joinPath(tree_, path);
    }

    void addNew(const std::string& folder, bool isLeftOut, std::vector<std::string>& list) const {
        if (!isLeftOut && !known_.contains(folder)) {
            list.push_back(relativeToRoot(written(folder)));
        }
    }

    [[nodiscard]] bool isPackaged(const std::string& path) const {
        const auto& packages = installation_.supportPackageRoot;
        return packages && below(real(*packages), path);
    }

    // A path without links as the manifest's paths lead to it: KEL folders and the root are compared as text.
    [[nodiscard]] std::string written(const std::string& path) const {
        for (const auto& [folder, text] : kel_) {
            if (const auto rest = below(folder, path)) {
                return absolutePath(*rest, text);
            }
        }
        const auto rest = below(real(installation_.root), path);
        return rest ? absolutePath(*rest, installation_.root) : path;
    }

    // A file of the support packages has the record of the file that it stands in for.
    [[nodiscard]] std::string recordedPath(const std::string& path) const {
        const auto& packages = installation_.supportPackageRoot;
        const auto rest = packages ? below(*packages, path) : std::nullopt;
        return rest ? absolutePath(*rest, installation_.root) : path;
    }

    [[nodiscard]] std::string relativeToRoot(const std::string& path) const {
        const auto rest = below(installation_.root, path);
        return rest ? *rest : std::filesystem::path(path).lexically_relative(installation_.root).string();
    }

    const std::string& tree_;
    const Installation& installation_;
    const FileTree& files_;
    const RealPath& realPath_;
    std::vector<std::pair<std::string, std::string>> kel_; // KEL folders: without links, and as written
    std::set<std::string> known_;                          // search and KEL folders without links
};

} // namespace

InstallationNews newsIn(const std::string& tree, const std::vector<std::string>& kelFolders,
                        const Installation& installation, const std::set<std::string>& recorded, const FileTree& files,
                        const std::function<std::optional<std::string>(const std::string& path)>& realPath) {
    return NewsFinder(tree, installation, files, realPath).find(kelFolders, recorded);
}

} // namespace tessgen::standalone
