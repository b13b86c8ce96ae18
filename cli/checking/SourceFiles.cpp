#include "cli/checking/SourceFiles.hpp"

#include "cli/explanation/GivenPath.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/text/Hash.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace tessgen::cli {

namespace {

using standalone::FileTree;
using standalone::joinPath;
using Kind = FileTree::Kind;

bool isAtOrBelow(std::string_view path, std::string_view folder) {
    return path == folder || standalone::isBelow(path, folder);
}

std::optional<std::string> realPath(const std::string& path) {
    try {
        return standalone::realPath(path);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

// In lower case.
std::vector<std::string> sourceExtensions(const standalone::Installation& installation) {
    auto extensions = standalone::defaultExtensions();
    extensions.insert(extensions.end(), installation.extensions.begin(), installation.extensions.end());
    std::transform(extensions.begin(), extensions.end(), extensions.begin(), standalone::inLowerCase);
    return extensions;
}

bool hasLowerExtension(std::string_view name, const std::vector<std::string>& extensions) {
    return standalone::hasExtension(standalone::inLowerCase(name), extensions);
}

class SourceWalk {
public:
    // `entersFolder`: whether a folder and what is below it count.
    // Lifetime: the session outlives it.
    SourceWalk(const standalone::SessionState& session, std::function<bool(const std::string& folder)> entersFolder)
        : files_(session.files), entersFolder_(std::move(entersFolder)),
          lowerExtensions_(sourceExtensions(session.installation)) {
        for (const auto& folder : session.installation.searchPath) {
            searched_.push_back(folder);
        }
        for (const auto& folder : session.installation.kelPath) {
            searched_.push_back(standalone::absolutePath(folder, "/"));
        }
    }

    void addGiven(const std::string& given) {
        const auto path = absoluteInUTF8(given);
        if (!path.starts_with('/')) {
            throw std::runtime_error(given + ": the path of the working folder is not UTF-8");
        }
        std::optional<Kind> kind;
        try {
            kind = files_.kindOf(path);
        } catch (const std::system_error& error) {
            skip(path, error);
            return;
        }
        if (kind == Kind::folder) {
            addFolder(asSearched(path));
        } else if (kind == Kind::file) {
            add(fileAsSearched(path));
            found_.roots.push_back(found_.paths.back());
        } else {
            throw std::runtime_error(
                given + (kind ? ": is neither a file nor a folder" : ": there is no such file or folder"));
        }
    }

    // Absent folders are left out.
    void addFolder(const std::string& folder) {
        if (entersFolder_(folder)) {
            found_.roots.push_back(standalone::toUTF16(folder).value());
        }
        open_.push_back({folder, false});
        while (!open_.empty()) {
            const auto next = std::move(open_.back());
            open_.pop_back();
            if (entersFolder_(next.path) && walked_.insert(next.path).second) {
                visit(next);
            }
        }
    }

    std::string fileAsSearched(const std::string& path) const {
        const auto slash = path.rfind('/');
        return joinPath(asSearched(path.substr(0, std::max<std::size_t>(slash, 1))), path.substr(slash + 1));
    }

    SourceFiles takeAll() {
        for (auto* const list : {&found_.paths, &found_.roots}) {
            std::sort(list->begin(), list->end());
            list->erase(std::unique(list->begin(), list->end()), list->end());
        }
        std::sort(found_.skipped.begin(), found_.skipped.end(),
                  [](const Skipped& a, const Skipped& b) { return a.place < b.place; });
        return std::move(found_);
    }

private:
    struct Folder {
        std::string path;
        bool isBehindLink; // to a package, class or private folder
    };

    void skip(const std::string& place, const std::system_error& error) {
        found_.skipped.push_back({place, error.code().message()});
    }

    void add(const std::string& path) { found_.paths.push_back(standalone::toUTF16(path).value()); }

    void visit(const Folder& folder) {
        try {
            const auto isSeen = [](std::string_view name) { return !name.starts_with('.'); };
            for (const auto& entry : files_.entries(folder.path, {isSeen}).value_or(std::vector<FileTree::Entry>())) {
                visitEntry(folder, entry);
            }
        } catch (const std::system_error& error) {
            skip(folder.path, error);
        }
    }

    void visitEntry(const Folder& folder, const FileTree::Entry& entry) {
        const bool isSource = hasLowerExtension(entry.name, lowerExtensions_);
        const bool isLink = entry.kind == Kind::link;
        if (!isSource && entry.kind != Kind::folder && !isLink) {
            return;
        }
        const auto path = joinPath(folder.path, entry.name);
        try {
            const auto kind = isLink ? files_.kindOf(path) : entry.kind;
            const bool isWalked = kind == Kind::folder && isEntered(folder, entry.name, path, isLink);
            if (!isWalked && !(isSource && kind == Kind::file)) {
                return;
            }
            if (!standalone::isUTF8(entry.name)) {
                found_.skipped.push_back({path, "the name is not UTF-8"});
            } else if (isWalked) {
                open_.push_back(
                    {path, folder.isBehindLink || (isLink && standalone::isPackageClassOrPrivate(entry.name))});
            } else {
                add(path);
            }
        } catch (const std::system_error& error) {
            skip(path, error);
        }
    }

    // Whether a folder in `above` is walked, or what a link to one leads to.
    bool isEntered(const Folder& above, const std::string& name, const std::string& path, bool isLink) const {
        const bool isSpecial = standalone::isPackageClassOrPrivate(name);
        return above.isBehindLink ? isSpecial && !isLink : isSpecial || !isLink || isSearched(path);
    }

    bool isSearched(const std::string& path) const {
        return std::find(searched_.begin(), searched_.end(), path) != searched_.end();
    }

    // The folder as the search spells it, when links lead to the one from the other.
    std::string asSearched(const std::string& folder) const {
        const auto isKnown = [&](const std::string& other) {
            return isAtOrBelow(folder, other) || isAtOrBelow(other, folder);
        };
        if (std::any_of(searched_.begin(), searched_.end(), isKnown)) {
            return folder;
        }
        const auto real = realPath(folder);
        if (!real) {
            return folder;
        }
        for (const auto& other : searched_) {
            const auto realOther = realPath(other);
            if (realOther && isAtOrBelow(*real, *realOther)) {
                return other + real->substr(realOther->size());
            }
        }
        const bool isAbove = std::any_of(searched_.begin(), searched_.end(),
                                         [&](const std::string& other) { return isAtOrBelow(other, *real); });
        return isAbove ? *real : folder;
    }

    const FileTree& files_;
    const std::function<bool(const std::string& folder)> entersFolder_;
    const std::vector<std::string> lowerExtensions_;
    std::vector<std::string> searched_; // folders of the search path, and KEL folders
    std::vector<Folder> open_;          // still to be visited
    std::unordered_set<std::string, standalone::TextHash> walked_;
    SourceFiles found_;
};

} // namespace

bool isSourceFile(std::string_view path, const standalone::Installation& installation) {
    return hasLowerExtension(path.substr(path.rfind('/') + 1), sourceExtensions(installation));
}

std::string asSearched(const std::string& file, const standalone::SessionState& session) {
    return SourceWalk(session, {}).fileAsSearched(file);
}

SourceFiles sourceFilesBelow(const std::vector<std::string>& paths, const standalone::SessionState& session) {
    SourceWalk walk(session, [](const std::string&) { return true; });
    for (const auto& path : paths) {
        walk.addGiven(path);
    }
    return walk.takeAll();
}

SourceFiles ownSourceFiles(const standalone::SessionState& session, const ResolverSession& resolver) {
    SourceWalk walk(session, [&](const std::string& folder) {
        const auto file = standalone::toUTF16(joinPath(folder, "f")).value(); // would count as the folder does
        return resolver->isUserResult({file, kelwhich::WhichResultType::ORVAKPath}) && !resolver.isOnKELPath(file);
    });
    for (const auto& folder : session.installation.searchPath) {
        walk.addFolder(folder);
    }
    return walk.takeAll();
}

} // namespace tessgen::cli
