#include "standalone/search/SearchPathWalk.hpp"

#include "standalone/search/SearchForms.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <system_error>
#include <utility>

namespace tessgen::standalone {

namespace {

using Entry = FileTree::Entry;
using Kind = FileTree::Kind;

struct SymbolFile {
    std::string_view symbol;
    std::uint32_t extension; // the first place of the extension in the list, which may repeat it
};

// The first place of an extension in the list, or the list's size.
std::uint32_t placeOf(std::string_view extension, const std::vector<std::string>& extensions) {
    std::uint32_t place = 0;
    while (place < extensions.size() && extensions[place] != extension) {
        ++place;
    }
    return place;
}

// The symbol and the extension in a file's name. A symbol has no dot, an extension may have some.
std::optional<SymbolFile> symbolFile(const Entry& entry, const std::vector<std::string>& extensions) {
    const std::string_view name = entry.name;
    const std::size_t dot = name.find('.');
    if (dot == std::string_view::npos || dot == 0) {
        return std::nullopt;
    }
    const std::uint32_t extension = placeOf(name.substr(dot + 1), extensions);
    return extension == extensions.size() ? std::nullopt : std::optional(SymbolFile{name.substr(0, dot), extension});
}

// Adds what lies below one folder of the search path.
class SearchPathWalk {
public:
    SearchPathWalk(const SearchedDisk& disk, NameIndex& index, IncompleteNames& incomplete)
        : disk_(disk), index_(index), incomplete_(incomplete) {
        for (const std::string& extension : disk.extensions) {
            firstPlaces_.push_back(placeOf(extension, disk.extensions));
        }
    }

    void addSearchFolder(const std::string& folder) {
        try {
            addFolder(folder, "", 0);
        } catch (const std::system_error&) {
            incomplete_.addAllUnreadable();
        }
    }

private:
    struct ClassFolder {
        std::string_view symbol; // without the "@"
        std::string path;
        std::uint32_t folder; // of its symbols
        std::vector<Entry> entries;
        std::vector<SymbolFile> files; // among `entries`
    };

    // `prefix` names the packages that lead to the folder, each with a "." after it.
    // Errors: std::system_error when this very folder cannot be read.
    void addFolder(const std::string& folder, const std::string& prefix, int links) {
        const auto entries = disk_.list(folder);
        if (!entries) {
            return;
        }
        static_assert(dottedForms.back() == SearchForm::packageClass); // so packages come before classes
        addPackages(folder, *entries, prefix, links);
        const std::vector<ClassFolder> classes = readClasses(folder, *entries, prefix);
        const std::vector<SymbolFile> files = symbolFiles(folder, *entries, prefix, {});
        for (const SearchForm form : searchForms(!prefix.empty())) {
            switch (form) {
            case SearchForm::ownClass:
                addOwnClasses(classes, prefix);
                break;
            case SearchForm::folder:
                addFiles(index_.addFolder(folder, prefix), files);
                break;
            case SearchForm::otherClasses: // also indexes "C.f", the form packageClass
                for (const ClassFolder& c : classes) {
                    addFiles(c.folder, c.files, [&](std::string_view symbol) { return symbol != c.symbol; });
                }
                break;
            case SearchForm::privateFolder:
                addPrivate(folder, *entries);
                break;
            case SearchForm::packageClass:
                addPackageClasses(classes);
                break;
            }
        }
    }

    void addOwnClasses(const std::vector<ClassFolder>& classes, const std::string& prefix) {
        for (const ClassFolder& c : classes) {
            const std::uint32_t own = prefix.empty() ? c.folder : index_.addFolder(c.path, prefix);
            addFiles(own, c.files, [&](std::string_view symbol) { return symbol == c.symbol; });
        }
    }

    void addPackageClasses(const std::vector<ClassFolder>& classes) {
        for (const ClassFolder& c : classes) {
            if (canBePart(c.symbol)) {
                addFiles(c.folder, c.files);
            }
        }
    }

    void addPackages(const std::string& folder, const std::vector<Entry>& entries, const std::string& prefix,
                     int links) {
        for (const Entry& entry : entries) {
            const std::string_view part = std::string_view(entry.name).substr(1);
            if (!entry.name.starts_with('+') || !canBePart(part)) {
                continue;
            }
            const std::string inside = prefix + std::string(part) + ".";
            const int linksToIt = links + (entry.kind == Kind::link ? 1 : 0);
            readOrMark(inside, [&] {
                if (!leadsTo(Kind::folder, disk_.links, folder, &entry)) {
                    return;
                }
                if (linksToIt > 1) { // such packages may never end
                    incomplete_.add(inside);
                } else {
                    addFolder(joinPath(folder, entry.name), inside, linksToIt);
                }
            });
        }
    }

    std::vector<ClassFolder> readClasses(const std::string& folder, const std::vector<Entry>& entries,
                                         const std::string& prefix) {
        std::vector<ClassFolder> classes;
        for (const Entry* entry : classFolders(entries)) {
            const std::string_view symbol = std::string_view(entry->name).substr(1);
            const std::string inside = prefix + std::string(symbol) + ".";
            const bool isRead = readOrMark(inside, [&] {
                if (leadsTo(Kind::folder, disk_.links, folder, entry)) {
                    std::string path = joinPath(folder, entry->name);
                    if (auto below = disk_.list(path)) {
                        auto files = symbolFiles(path, *below, prefix, inside);
                        const auto number = index_.addFolder(path, canBePart(symbol) ? inside : "", prefix.empty());
                        classes.push_back({symbol, std::move(path), number, *std::move(below), std::move(files)});
                    }
                }
            });
            if (!isRead && prefix.empty()) {
                incomplete_.add("");
            }
        }
        return classes;
    }

    void addPrivate(const std::string& folder, const std::vector<Entry>& entries) {
        const auto entry =
            std::find_if(entries.begin(), entries.end(), [](const Entry& e) { return e.name == "private"; });
        readOrMark("", [&] {
            if (entry == entries.end() || !leadsTo(Kind::folder, disk_.links, folder, &*entry)) {
                return;
            }
            const std::string path = joinPath(folder, entry->name);
            if (const auto below = disk_.list(path)) {
                addFiles(index_.addFolder(path, ""), symbolFiles(path, *below, "", {}));
            }
        });
    }

    // The source files among `entries`. Names reach them by `prefix`, or by `otherPrefix` unless that is empty.
    std::vector<SymbolFile> symbolFiles(const std::string& folder, const std::vector<Entry>& entries,
                                        const std::string& prefix, const std::string& otherPrefix) {
        std::vector<SymbolFile> found;
        found.reserve(entries.size());
        for (const Entry& entry : entries) {
            const auto file = symbolFile(entry, disk_.extensions);
            if (!file) {
                continue;
            }
            const bool isRead = readOrMark(prefix.empty() ? file->symbol : prefix, [&] {
                if (leadsTo(Kind::file, disk_.links, folder, &entry)) {
                    found.push_back(*file);
                }
            });
            if (!isRead && !otherPrefix.empty()) {
                incomplete_.add(otherPrefix);
            }
        }
        return found;
    }

    void addFiles(std::uint32_t folder, const std::vector<SymbolFile>& files) {
        addFiles(folder, files, [](std::string_view) { return true; });
    }

    template <typename Wanted>
    void addFiles(std::uint32_t folder, const std::vector<SymbolFile>& files, Wanted wanted) {
        for (std::uint32_t extension = 0; extension < disk_.extensions.size(); ++extension) {
            for (const SymbolFile& file : files) {
                if (file.extension == firstPlaces_[extension] && wanted(file.symbol)) {
                    index_.add(file.symbol, folder, extension);
                }
            }
        }
    }

    // Whether a dotted symbol can have that part: not empty, without a dot, UTF-8.
    static bool canBePart(std::string_view text) {
        return !text.empty() && text.find('.') == std::string_view::npos && isUTF8(text);
    }

    // Runs `read`. On std::system_error marks all names with the first part of `names` ("": all plain names) as
    // incomplete and returns false.
    template <typename Read>
    bool readOrMark(std::string_view names, Read read) {
        try {
            read();
            return true;
        } catch (const std::system_error&) {
            incomplete_.addUnreadable(names);
            return false;
        }
    }

    const SearchedDisk& disk_;
    NameIndex& index_;
    IncompleteNames& incomplete_;
    std::vector<std::uint32_t> firstPlaces_; // of each extension among those of the disk
};

} // namespace

EntryFilter searchedEntries(const std::vector<std::string>& extensions) {
    return {[&extensions](std::string_view name) {
        return hasExtension(name, extensions) || isPackageClassOrPrivate(name); // the rarer ones last
    }};
}

void addSearchFolder(std::uint32_t number, const std::string& folder, const SearchedDisk& disk, NameIndex& index,
                     IncompleteNames& incomplete) {
    index.beginSearchFolder(number);
    SearchPathWalk(disk, index, incomplete).addSearchFolder(folder);
}

} // namespace tessgen::standalone
