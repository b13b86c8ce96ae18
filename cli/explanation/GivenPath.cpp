#include "cli/explanation/GivenPath.hpp"

#include "cli/output/Escape.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace tessgen::cli {

std::u16string absolute(const std::string& path) {
    std::error_code unknown;
    const auto folder = std::filesystem::current_path(unknown);
    const auto text = unknown && !path.starts_with('/') ? path : standalone::absolutePath(path, folder.string());
    return standalone::toUTF16(text).value_or(parseName(path));
}

std::string absoluteInUTF8(const std::string& path) {
    if (!standalone::isUTF8(path)) {
        throw std::runtime_error(path + ": the path is not UTF-8");
    }
    return inUTF8(absolute(path));
}

std::string withoutFolderLinks(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) {
        return path;
    }
    const auto folder = standalone::realPath(path.substr(0, slash + 1));
    return folder ? standalone::joinPath(*folder, path.substr(slash + 1)) : path;
}

bool isPlace(const std::string& candidate, const std::string& place) {
    try {
        return withoutFolderLinks(candidate) == place;
    } catch (const std::system_error&) {
        return candidate == place;
    }
}

} // namespace tessgen::cli
