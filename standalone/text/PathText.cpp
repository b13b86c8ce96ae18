#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <cstddef>

namespace tessgen::standalone {

namespace {

// Moves from the folder `path`, which is empty for the root, to the one that a component names.
void enter(std::string& path, std::string_view component) {
    if (component == "..") {
        path.resize(path.empty() ? 0 : path.rfind('/'));
    } else if (!component.empty() && component != ".") {
        path.append(1, '/').append(component);
    }
}

} // namespace

std::string joinPath(std::string_view folder, std::string_view rest) {
    std::string path;
    joinPath(path, folder, rest);
    return path;
}

void joinPath(std::string& path, std::string_view folder, std::string_view rest) {
    path.reserve(folder.size() + 1 + rest.size());
    path = folder;
    if (!path.ends_with('/')) {
        path += '/';
    }
    path += rest;
}

std::string absolutePath(std::string_view path, std::string_view base) {
    std::string result;
    result.reserve(base.size() + 1 + path.size());
    result = path.starts_with('/') || base == "/" ? std::string_view() : base;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        enter(result, path.substr(begin, end - begin));
        begin = end + 1;
    }
    if (result.empty()) {
        result = "/";
    }
    return result;
}

bool isBelow(std::string_view path, std::string_view folder) {
    return folder == "/" || (path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/');
}

bool isPackageClassOrPrivate(std::string_view name) {
    return name.starts_with('+') || isClassOrPrivate(name);
}

bool isClassOrPrivate(std::string_view name) {
    return name.starts_with('@') || name == "private";
}

bool hasExtension(std::string_view name, const std::vector<std::string>& extensions) {
    return std::any_of(extensions.begin(), extensions.end(), [name](const std::string& extension) {
        return name.size() > extension.size() + 1 && name[name.size() - extension.size() - 1] == '.'
               && name.ends_with(extension);
    });
}

} // namespace tessgen::standalone
