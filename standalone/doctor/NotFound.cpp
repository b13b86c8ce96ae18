#include "standalone/doctor/NotFound.hpp"

#include "host/Paths.hpp"
#include "standalone/files/OverlayFileTree.hpp"
#include "standalone/search/NameSearch.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace tessgen::standalone {

namespace {

// In UTF-8; the text was converted from UTF-8.
std::string inUTF8(std::u16string_view text) {
    return toUTF8(text).value_or(std::string());
}

bool contains(const std::vector<std::string>& list, const std::string& text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

std::string rootFolderOf(const std::u16string& path) {
    const auto folder = kelwhich::packageRootFolder(path);
    return folder.empty() ? "/" : inUTF8(folder);
}

std::optional<std::size_t> placeOf(const std::u16string& path, const std::vector<FoundPlace>& places) {
    const auto place =
        std::find_if(places.begin(), places.end(), [&](const FoundPlace& found) { return found.line == path; });
    return place == places.end() ? std::nullopt : std::optional<std::size_t>(place - places.begin());
}

// The folder that must be on the search path so that `name` may lead to the file; nothing when one of them may do.
std::optional<std::string> missingFolder(const std::string& path, const std::string& name,
                                         const Installation& installation) {
    const auto& searched = installation.searchPath;
    auto folder = rootFolderOf(*toUTF16(path));
    if (name.find('/') != std::string::npos) {
        if (name.starts_with('/') || std::any_of(searched.begin(), searched.end(), [&](const std::string& above) {
                return isBelow(path, above);
            })) {
            return std::nullopt;
        }
        for (const auto& extension : installation.extensions) {
            auto end = "/" + name;
            end.append(".").append(extension);
            folder = path.ends_with(end) ? path.substr(0, path.size() - end.size()) : folder;
        }
    }
    return contains(searched, folder) ? std::nullopt : std::optional(std::move(folder));
}

// The advice for a file that is found under the name `known`, but not as `asked`.
std::string otherName(const std::u16string& path, const std::string& asked, const std::string& known) {
    const auto defined = inUTF8(kelwhich::qualifiedNameForPath(path));
    if (known == defined) {
        return "it is not found as " + asked + ": it defines " + known;
    }
    const auto file = kelwhich::fileName(path);
    const bool isPlace = asked == defined && std::count(file.begin(), file.end(), u'.') == 1;
    return (isPlace ? "the search does not look into the folder of the file" : "it is not found as " + asked)
           + ": ask for " + known;
}

} // namespace

std::vector<std::string> filesIn(const std::vector<std::string>& folders, std::u16string_view name,
                                 const Installation& installation, const FileTree& files) {
    Installation supposed;
    supposed.searchPath = folders;
    supposed.extensions = installation.extensions;
    std::vector<std::string> paths;
    for (const auto& place : NameSearch(supposed, files).find(name)) {
        paths.push_back(inUTF8(place.line));
    }
    return paths;
}

std::string absenceOf(const std::string& path) {
    std::error_code unknown;
    return std::filesystem::is_symlink(path, unknown) ? "it is a link that leads nowhere" : "there is no such file";
}

std::vector<std::string> usualNames(const std::u16string& path, const Installation& installation) {
    const auto text = inUTF8(path);
    const auto below = [&](const std::string& folder) { return text.substr(joinPath(folder, "").size()); };
    const auto stemOf = [](const std::string& name) { return name.substr(0, name.rfind('.')); };
    auto dotted = stemOf(below(rootFolderOf(path))); // a method of a class in a package: "+p/@C/m" is p.C.m
    std::erase_if(dotted, [](char c) { return c == '+' || c == '@'; });
    std::replace(dotted.begin(), dotted.end(), '/', '.');
    std::vector<std::string> names = {inUTF8(kelwhich::qualifiedNameForPath(path)), dotted};
    for (const auto& folder : installation.searchPath) {
        if (isBelow(text, folder)) {
            names.insert(names.end(), {stemOf(below(folder)), below(folder)});
        }
    }
    names.push_back(text);
    return names;
}

std::u16string definedName(const std::u16string& path) {
    return kelwhich::qualifiedNameForPath(path);
}

bool isSearched(const std::u16string& path, const Installation& installation) {
    return contains(installation.searchPath, rootFolderOf(path));
}

NotFound whyNotFound(const std::string& path, std::u16string_view name, const SessionState& session) {
    const auto units = toUTF16(path).value();
    if (const auto place = placeOf(units, session.find(name))) {
        return {{}, std::u16string(name), *place};
    }
    NotFound result{{}, std::u16string(name), 0};
    auto supposed = session.installation;
    const auto asked = inUTF8(name);
    const auto kind = session.files.kindOf(path);
    if (kind && kind != FileTree::Kind::file) {
        return {{"it is not a regular file"}, {}, 0};
    }
    if (!kind) {
        result.reasons.push_back(absenceOf(path));
    }
    const auto fileName = path.substr(path.rfind('/') + 1);
    const bool isWhole = asked.find('/') != std::string::npos && (path.ends_with("/" + asked) || asked.front() == '/');
    if (!isWhole && !hasExtension(fileName, supposed.extensions)) {
        const auto dot = fileName.rfind('.');
        result.reasons.emplace_back(dot == std::string::npos ? "it has no extension"
                                                             : "its extension is not in the manifest");
        supposed.extensions.push_back(fileName.substr(dot + 1));
    }
    if (auto folder = missingFolder(path, asked, supposed)) {
        result.reasons.push_back(*folder + " is not on the search path");
        supposed.searchPath.push_back(std::move(*folder));
    }
    const OverlayFileTree files(session.files, {path});
    const NameSearch search(supposed, files);
    const auto placeAs = [&](const std::string& text) { return placeOf(units, search.find(*toUTF16(text))); };
    auto place = placeAs(asked);
    if (!place) {
        for (const auto& other : usualNames(units, supposed)) { // the last one, the path itself, is always found
            place = placeAs(other);
            if (place) {
                result.reasons.push_back(otherName(units, asked, other));
                result.name = *toUTF16(other);
                break;
            }
        }
    }
    result.place = place.value_or(0);
    return result;
}

} // namespace tessgen::standalone
