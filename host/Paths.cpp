#include "host/Paths.hpp"

#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::kelwhich {

namespace {

constexpr auto npos = std::u16string_view::npos;

// The last place of an ASCII character, or npos. Searches bytes, many at a time; std::u16string_view's own search goes
// unit by unit.
std::size_t findLast(std::u16string_view text, char character) noexcept {
    std::size_t length = text.size() * sizeof(char16_t);
    while (length != 0) {
        const auto* const begin = reinterpret_cast<const char*>(text.data());
        const auto* const found = static_cast<const char*>(memrchr(begin, character, length));
        if (found == nullptr) {
            break;
        }
        length = static_cast<std::size_t>(found - begin);
        if (text[length / sizeof(char16_t)] == static_cast<char16_t>(character)) { // not half of another unit
            return length / sizeof(char16_t);
        }
    }
    return npos;
}

// The text before the last "/" and after it; without a "/", all of it is the name.
struct Parts {
    explicit Parts(std::u16string_view path) noexcept : name(path) {
        if (const auto separator = findLast(path, '/'); separator != npos) {
            folder = path.substr(0, separator);
            name = path.substr(separator + 1);
        }
    }

    std::u16string_view folder;
    std::u16string_view name;
};

std::u16string_view stemOf(std::u16string_view file) noexcept {
    return file.substr(0, findLast(file, '.'));
}

bool isPackageOrClassFolder(std::u16string_view folderName) noexcept {
    return !folderName.empty() && (folderName.front() == u'+' || folderName.front() == u'@');
}

// The folder of a file; of a "private" folder, the folder above it.
std::u16string_view folderAbovePrivate(std::u16string_view path) noexcept {
    const auto folder = parentDirectory(path);
    const Parts parts(folder);
    return equal(parts.name, u"private") ? parts.folder : folder;
}

// The qualified name that a path defines, in parts.
struct QualifiedName {
    static constexpr std::size_t usualNesting = 8;

    explicit QualifiedName(std::u16string_view text) : last(text) {
        const Parts file(text);
        if (file.name.size() == text.size()) {
            return; // there is no "/"
        }
        last = stemOf(file.name);
        auto folder = file.folder;
        if (const auto classFolder = getClassFolderInfo(text)) {
            if (!equal(classFolder->className, last)) {
                return; // a method of the class
            }
            folder = parentDirectory(classFolder->classFolder);
        }
        for (Parts parts(folder); isPackageOrClassFolder(parts.name); parts = Parts(parts.folder)) {
            prefixes.push_back(parts.name.substr(1));
        }
    }

    boost::container::small_vector<std::u16string_view, usualNesting> prefixes; // innermost first
    std::u16string_view last;
};

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
    return Parts(path).folder;
}

std::u16string_view fileName(std::u16string_view path) noexcept {
    return Parts(path).name;
}

std::u16string_view fileExtension(std::u16string_view path) noexcept {
    const auto dot = findLast(path, '.');
    return dot == npos ? std::u16string_view() : path.substr(dot + 1);
}

std::u16string_view fileStem(std::u16string_view path) noexcept {
    return stemOf(Parts(path).name);
}

bool containsSeparator(const std::u16string& text) noexcept {
    return findLast(text, '/') != npos;
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
    for (Parts parts(folder); isPackageOrClassFolder(parts.name); parts = Parts(folder)) {
        folder = parts.folder;
    }
    return folder;
}

std::u16string qualifiedNameForPath(const std::u16string& text) {
    constexpr std::size_t usualPrefixLength = 16;
    const QualifiedName name(text);
    std::u16string qualified;
    qualified.reserve(name.prefixes.size() * usualPrefixLength + name.last.size());
    std::for_each(name.prefixes.rbegin(), name.prefixes.rend(),
                  [&](std::u16string_view prefix) { qualified.append(prefix).push_back(u'.'); });
    qualified.append(name.last);
    return qualified; // not the reference that `append` returns: that would be copied
}

bool definesPlainName(std::u16string_view text, std::u16string_view name) {
    const QualifiedName defined(text);
    return defined.prefixes.empty() && equal(defined.last, name);
}

} // namespace tessgen::kelwhich
