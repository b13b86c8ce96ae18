#include "host/Paths.hpp"

#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::kelwhich {

namespace {

constexpr auto npos = std::u16string_view::npos;

bool isPackageOrClassFolder(std::u16string_view folderName) noexcept {
    return !folderName.empty() && (folderName.front() == u'+' || folderName.front() == u'@');
}

// The folder of a file, or the folder above it when that is a "private" one.
std::u16string_view folderAbovePrivate(std::u16string_view path) noexcept {
    const auto folder = parentDirectory(path);
    return sameText(fileName(folder), u"private") ? parentDirectory(folder) : folder;
}

} // namespace

std::u16string replacePrefix(std::u16string_view text, std::u16string_view from, std::u16string_view to) {
    if (!beginsWith(text, from)) {
        return std::u16string(text);
    }
    std::u16string replaced;
    replaced.reserve(to.size() + text.size() - from.size());
    replaced.append(to).append(text.substr(from.size()));
    return replaced;
}

std::u16string_view parentDirectory(std::u16string_view path) noexcept {
    const auto separator = path.rfind(u'/');
    return separator == npos ? std::u16string_view() : path.substr(0, separator);
}

std::u16string_view fileName(std::u16string_view path) noexcept {
    const auto separator = path.rfind(u'/');
    return separator == npos ? path : path.substr(separator + 1);
}

std::u16string_view fileExtension(std::u16string_view path) noexcept {
    const auto dot = path.rfind(u'.');
    return dot == npos ? std::u16string_view() : path.substr(dot + 1);
}

std::u16string_view fileStem(std::u16string_view path) noexcept {
    const auto name = fileName(path);
    return name.substr(0, name.rfind(u'.'));
}

bool containsSeparator(const std::u16string& text) noexcept {
    return text.find(u'/') != npos;
}

std::optional<ClassFolderInfo> getClassFolderInfo(std::u16string_view path) {
    const auto folder = folderAbovePrivate(path);
    const auto name = fileName(folder);
    if (name.empty() || name.front() != u'@') {
        return std::nullopt;
    }
    return ClassFolderInfo{folder, name.substr(1)};
}

std::u16string_view packageRootFolder(std::u16string_view path) noexcept {
    auto folder = folderAbovePrivate(path);
    while (isPackageOrClassFolder(fileName(folder))) {
        folder = parentDirectory(folder);
    }
    return folder;
}

std::u16string qualifiedNameForPath(const std::u16string& text) {
    if (!containsSeparator(text)) {
        return text;
    }
    const auto stem = fileStem(text);
    auto folder = parentDirectory(text);
    if (const auto classFolder = getClassFolderInfo(text)) {
        if (!sameText(classFolder->className, stem)) {
            return std::u16string(stem); // a method of the class
        }
        folder = parentDirectory(classFolder->classFolder);
    }

    constexpr std::size_t usualNesting = 8;
    constexpr std::size_t usualPrefixLength = 16;
    boost::container::small_vector<std::u16string_view, usualNesting> prefixes; // innermost first
    for (auto name = fileName(folder); isPackageOrClassFolder(name); name = fileName(folder)) {
        prefixes.push_back(name.substr(1));
        folder = parentDirectory(folder);
    }
    std::u16string qualified;
    qualified.reserve(prefixes.size() * usualPrefixLength + stem.size());
    std::for_each(prefixes.rbegin(), prefixes.rend(),
                  [&](std::u16string_view prefix) { qualified.append(prefix).push_back(u'.'); });
    qualified.append(stem);
    return qualified; // not what `append` returns, which would be copied
}

} // namespace tessgen::kelwhich
