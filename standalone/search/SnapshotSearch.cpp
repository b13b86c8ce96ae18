#include "standalone/search/SnapshotSearch.hpp"

#include "standalone/search/FolderNaming.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

namespace tessgen::standalone {

namespace {

using Entry = FileTree::Entry;
using Kind = FileTree::Kind;

struct SymbolFile {
    std::string_view symbol;
    std::uint32_t extension; // its first place in the list, which may hold it again
};

// The first place of an extension in the list, or the list's size.
std::uint32_t placeOf(std::string_view extension, const std::vector<std::string>& extensions) {
    std::uint32_t place = 0;
    while (place < extensions.size() && extensions[place] != extension) {
        ++place;
    }
    return place;
}

// The symbol and the extension that a file's name may stand for: a symbol has no dot, an extension may.
std::optional<SymbolFile> symbolFile(const Entry& entry, const std::vector<std::string>& extensions) {
    const std::string_view name = entry.name;
    const std::size_t dot = name.find('.');
    if (dot == std::string_view::npos || dot == 0) {
        return std::nullopt;
    }
    const std::uint32_t extension = placeOf(name.substr(dot + 1), extensions);
    return extension == extensions.size() ? std::nullopt : std::optional(SymbolFile{name.substr(0, dot), extension});
}

// What a question may ask for in a listing.
FileTree::Filter searchedNames(const std::vector<std::string>& extensions) {
    return [&extensions](std::string_view name) {
        const bool isFile = std::any_of(extensions.begin(), extensions.end(), [&](const std::string& extension) {
            return name.size() > extension.size() && name[name.size() - extension.size() - 1] == '.'
                   && name.ends_with(extension);
        });
        return isFile || isPackageClassOrPrivate(name); // as few are
    };
}

} // namespace

// Adds the files of every symbol, each symbol's in the order in which NameSearch finds them.
class SearchPathWalk {
public:
    SearchPathWalk(const Installation& installation, SnapshotSearch& search)
        : extensions_(installation.extensions), top_(installation.root), search_(search) {
        for (const std::string& extension : extensions_) {
            firstPlaces_.push_back(placeOf(extension, extensions_));
        }
    }

    void addSearchFolder(const std::string& folder) {
        try {
            addFolder(folder, "", 0);
        } catch (const std::system_error&) {
            search_.allUnsure_ = true;
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

    // `prefix` are the packages that lead to the folder, each with a "." behind it. Errors: the folder's own.
    void addFolder(const std::string& folder, const std::string& prefix, int links) {
        const auto entries = search_.files_.entries(folder, top_);
        if (!entries) {
            return;
        }
        addPackages(folder, *entries, prefix, links); // +q/f.EXT comes before @q/f.EXT
        const std::vector<ClassFolder> classes = readClasses(folder, *entries, prefix);
        const std::vector<SymbolFile> files = symbolFiles(folder, *entries, prefix, {});

        for (const ClassFolder& c : classes) {
            const std::uint32_t own = prefix.empty() ? c.folder : search_.index_.addFolder(c.path, prefix);
            addFiles(own, c.files, [&](std::string_view symbol) { return symbol == c.symbol; });
        }
        addFiles(search_.index_.addFolder(folder, prefix), files);
        for (const ClassFolder& c : classes) {
            if (prefix.empty()) {
                addFiles(c.folder, c.files, [&](std::string_view symbol) { return symbol != c.symbol; });
            } else if (canBePart(c.symbol)) {
                addFiles(c.folder, c.files);
            }
        }
        if (prefix.empty()) {
            addPrivate(folder, *entries);
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
            sureOr(inside, [&] {
                if (!leadsTo(Kind::folder, search_.files_, folder, &entry)) {
                    return;
                }
                if (linksToIt > 1) { // such packages may go on for ever
                    markUnsure(inside);
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
            const bool isSure = sureOr(inside, [&] {
                if (leadsTo(Kind::folder, search_.files_, folder, entry)) {
                    std::string path = joinPath(folder, entry->name);
                    if (auto below = search_.files_.entries(path, top_)) {
                        auto files = symbolFiles(path, *below, prefix, inside);
                        const auto number =
                            search_.index_.addFolder(path, canBePart(symbol) ? inside : "", prefix.empty());
                        classes.push_back({symbol, std::move(path), number, *std::move(below), std::move(files)});
                    }
                }
            });
            if (!isSure && prefix.empty()) {
                markUnsure("");
            }
        }
        return classes;
    }

    void addPrivate(const std::string& folder, const std::vector<Entry>& entries) {
        const auto entry =
            std::find_if(entries.begin(), entries.end(), [](const Entry& e) { return e.name == "private"; });
        sureOr("", [&] {
            if (entry == entries.end() || !leadsTo(Kind::folder, search_.files_, folder, &*entry)) {
                return;
            }
            const std::string path = joinPath(folder, entry->name);
            if (const auto below = search_.files_.entries(path, top_)) {
                addFiles(search_.index_.addFolder(path, ""), symbolFiles(path, *below, "", {}));
            }
        });
    }

    // The files among `entries` that stand for symbols, which are asked for after `prefix` or after `otherPrefix`.
    std::vector<SymbolFile> symbolFiles(const std::string& folder, const std::vector<Entry>& entries,
                                        const std::string& prefix, const std::string& otherPrefix) {
        std::vector<SymbolFile> found;
        found.reserve(entries.size());
        for (const Entry& entry : entries) {
            const auto file = symbolFile(entry, extensions_);
            if (!file) {
                continue;
            }
            const bool isSure = sureOr(prefix.empty() ? file->symbol : prefix, [&] {
                if (leadsTo(Kind::file, search_.files_, folder, &entry)) {
                    found.push_back(*file);
                }
            });
            if (!isSure && !otherPrefix.empty()) {
                markUnsure(otherPrefix);
            }
        }
        return found;
    }

    void addFiles(std::uint32_t folder, const std::vector<SymbolFile>& files) {
        addFiles(folder, files, [](std::string_view) { return true; });
    }

    template <typename Wanted>
    void addFiles(std::uint32_t folder, const std::vector<SymbolFile>& files, Wanted wanted) {
        for (std::uint32_t extension = 0; extension < extensions_.size(); ++extension) {
            for (const SymbolFile& file : files) {
                if (file.extension == firstPlaces_[extension] && wanted(file.symbol)) {
                    search_.index_.add(file.symbol, folder, extension);
                }
            }
        }
    }

    // A part of a dotted symbol: not empty, without a dot, and text.
    static bool canBePart(std::string_view text) {
        return !text.empty() && text.find('.') == std::string_view::npos && isUTF8(text);
    }

    // Whether `look` could; the names that begin with `names` are unsure otherwise.
    template <typename Look>
    bool sureOr(std::string_view names, Look look) {
        try {
            look();
            return true;
        } catch (const std::system_error&) {
            markUnsure(names);
            return false;
        }
    }

    void markUnsure(std::string_view names) { search_.unsure_.emplace(names.substr(0, names.find('.'))); }

    const std::vector<std::string>& extensions_;
    std::vector<std::uint32_t> firstPlaces_; // of each extension in the list
    const DirectoryHandle top_;
    SnapshotSearch& search_;
};

SnapshotSearch::SnapshotSearch(const Installation& installation, const FileTree& files)
    : files_(files, searchedNames(installation.extensions)), search_(installation, files_),
      index_(installation.extensions) {
    for (const Builtin& builtin : installation.builtins) {
        builtins_[builtin.name].push_back(builtin);
    }
    SearchPathWalk walk(installation, *this);
    for (const std::string& folder : installation.searchPath) {
        walk.addSearchFolder(folder);
    }
    index_.close();
}

std::vector<FoundPlace> SnapshotSearch::find(std::u16string_view name) const {
    const bool isPath = name.find(u'/') != std::u16string_view::npos;
    const std::optional<std::string> symbol = isPath ? std::nullopt : toUTF8(name);
    if (!symbol || isUnsure(*symbol)) {
        return search_.find(name);
    }
    std::vector<FoundPlace> places = index_.find(*symbol);
    if (const auto group = builtins_.find(name); group != builtins_.end()) {
        addBuiltins(name, group->second, places);
    }
    return places;
}

bool SnapshotSearch::isUnsure(std::string_view symbol) const {
    const std::size_t end = symbol.find('.');
    return allUnsure_
           || (!unsure_.empty()
               && (unsure_.contains(std::string(symbol.substr(0, end)))
                   || (end == std::string_view::npos && unsure_.contains(""))));
}

} // namespace tessgen::standalone
