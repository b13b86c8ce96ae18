#include "cli/commands/InitTree.hpp"

#include "cli/commands/Commands.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "standalone/files/FileErrors.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace tessgen::cli {

bool isThere(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

std::string realFolder(const std::string& folder) {
    std::error_code error;
    auto real = std::filesystem::canonical(folder, error).string();
    if (error == std::errc::no_such_file_or_directory) {
        throw std::runtime_error(folder + ": there is no such folder; name one that is there");
    }
    if (error) {
        throw standalone::DiskError(error.value(), folder);
    }
    if (!std::filesystem::is_directory(real, error)) {
        throw std::runtime_error(folder + ": is not a folder");
    }
    if (!standalone::isUTF8(real)) {
        throw std::runtime_error(real + ": the path is not UTF-8, so a manifest there could not name its files");
    }
    return real;
}

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

std::vector<std::string> relativeKELFolders(const std::vector<std::string>& folders, const std::string& tree) {
    auto relative = relativeFolders(folders, tree);
    for (const auto& folder : relative) {
        if (standalone::isPackageClassOrPrivate(std::string_view(folder).substr(folder.rfind('/') + 1))) {
            throw std::runtime_error(folder + ": is a package, class or private folder; name the folder above it");
        }
    }
    return relative;
}

void refuseLink(const std::string& file, std::string_view advice) {
    std::error_code absent;
    if (std::filesystem::is_symlink(file, absent)) {
        throw std::runtime_error(fmt::format("{}: is a link; {}", file, advice));
    }
}

std::string recordLine(const std::string& file) {
    return printJSON({{"path", file}, {"supportFlags", std::vector<bool>(6, true)}}) + '\n';
}

void reportSkipped(const std::vector<std::string>& notUTF8, const std::vector<std::string>& unreadable) {
    for (const auto& path : notUTF8) {
        reportError(fmt::format("skipped, its name is not UTF-8: {}", path));
    }
    for (const auto& folder : unreadable) {
        reportError(fmt::format("skipped: {}", folder));
    }
}

int exitCodeFor(const std::vector<std::string>& unreadable) {
    if (unreadable.empty()) {
        return exitYes;
    }
    reportError(fmt::format("left out {} that could not be read", counted(unreadable.size(), "folder")));
    return exitPartial;
}

} // namespace tessgen::cli
