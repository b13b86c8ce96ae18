#include "standalone/doctor/UnsearchedFolders.hpp"

#include "standalone/manifest/TreeSurvey.hpp"
#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <set>
#include <system_error>
#include <utility>

namespace tessgen::standalone {

std::vector<std::string>
unsearchedFolders(const Installation& installation, const FileTree& files,
                  const std::function<std::optional<std::string>(const std::string& path)>& realPath) {
    const auto real = [&](const std::string& path) {
        try {
            return realPath(path).value_or(path);
        } catch (const std::system_error&) {
            return path;
        }
    };
    std::set<std::string> known;
    for (const auto* folders : {&installation.searchPath, &installation.kelPath}) {
        std::transform(folders->begin(), folders->end(), std::inserter(known, known.end()), real);
    }
    const auto root = real(installation.root);
    const auto& packages = installation.supportPackageRoot;
    const auto packaged = packages ? std::optional(joinPath(real(*packages), "")) : std::nullopt;
    std::vector<std::string> found;
    const auto survey = surveyTree(root, {}, files, installation.extensions);
    for (const auto& folder : survey.searchFolders) {
        auto path = folder == "." ? root : joinPath(root, folder);
        if (!known.contains(path) && !(packaged && joinPath(path, "").starts_with(*packaged))) {
            found.push_back(std::move(path));
        }
    }
    return found;
}

} // namespace tessgen::standalone
