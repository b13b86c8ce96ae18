#include "standalone/search/NameSearch.hpp"

#include "standalone/search/SearchForms.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <system_error>
#include <utility>

namespace tessgen::standalone {

namespace {

using Entries = std::vector<FileTree::Entry>;
using Entry = FileTree::Entry;
using Kind = FileTree::Kind;
using Places = std::vector<FoundPlace>;

// The path is UTF-8: its folder is the manifest's, and its file name equals a name that is.
void addFile(const std::string& path, Places& places) {
    places.push_back({toUTF16(path).value(), {}});
}

const Entry* findEntry(const Entries& entries, std::string_view name) {
    const auto position =
        std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.name == name; });
    return position == entries.end() ? nullptr : &*position;
}

// Searches for one symbol. Lists a folder once, and only when the folder above shows that it is there.
// Threads: one.
class SymbolSearch {
public:
    // No part of the symbol is empty.
    SymbolSearch(std::vector<std::string> parts, const std::vector<std::string>& extensions, const FileTree& files)
        : files_(files), classFolder_("@" + parts.back()) {
        for (const std::string& extension : extensions) {
            fileNames_.push_back(parts.back() + "." + extension);
        }
        parts.pop_back();
        packages_ = std::move(parts);
    }

    // Adds the symbol's files below one folder of the search path.
    void search(const std::string& folder, Places& places) const {
        if (packages_.empty()) {
            searchPlain(folder, places);
        } else {
            searchDotted(folder, places);
        }
    }

private:
    void searchPlain(const std::string& folder, Places& places) const {
        const Entries entries =
            list(folder, [this](std::string_view name) { return isClassOrPrivate(name) || isFileName(name); });
        if (entries.empty()) { // most have none
            return;
        }
        for (const SearchForm form : plainForms) {
            addForm(form, folder, entries, places);
        }
    }

    void searchDotted(std::string folder, Places& places) const {
        for (std::size_t depth = 0; depth + 1 < packages_.size(); ++depth) {
            const std::string package = "+" + packages_[depth];
            const Entries entries = list(folder, [&](std::string_view name) { return name == package; });
            if (!leadsTo(Kind::folder, files_, folder, findEntry(entries, package))) {
                return;
            }
            folder = joinPath(folder, package);
        }
        const std::string packageName = "+" + packages_.back();
        const std::string className = "@" + packages_.back();
        const Entries entries =
            list(folder, [&](std::string_view name) { return name == packageName || name == className; });
        std::string package;
        Entries inPackage;
        if (leadsTo(Kind::folder, files_, folder, findEntry(entries, packageName))) {
            package = joinPath(folder, packageName);
            inPackage =
                list(package, [this](std::string_view name) { return name == classFolder_ || isFileName(name); });
        }
        for (const SearchForm form : dottedForms) {
            if (form == SearchForm::packageClass) {
                addFilesBelow(folder, findEntry(entries, className), places);
            } else {
                addForm(form, package, inPackage, places);
            }
        }
    }

    // Adds the files of a form. `folder`, with these entries, is the one that the packages lead to.
    void addForm(SearchForm form, const std::string& folder, const Entries& entries, Places& places) const {
        switch (form) {
        case SearchForm::ownClass:
            addFilesBelow(folder, findEntry(entries, classFolder_), places);
            break;
        case SearchForm::folder:
            addFiles(folder, entries, places);
            break;
        case SearchForm::otherClasses:
            for (const Entry* entry : classFolders(entries)) {
                if (entry->name != classFolder_) {
                    addFilesBelow(folder, entry, places);
                }
            }
            break;
        case SearchForm::privateFolder:
            addFilesBelow(folder, findEntry(entries, "private"), places);
            break;
        case SearchForm::packageClass: // lies in the folder above
            break;
        }
    }

    // Adds the symbol's files in the folder that an entry of `folder`, which may be null, leads to.
    void addFilesBelow(const std::string& folder, const Entry* entry, Places& places) const {
        if (leadsTo(Kind::folder, files_, folder, entry)) {
            joinPath(below_, folder, entry->name);
            const Entries entries = list(below_, [this](std::string_view name) { return isFileName(name); });
            if (!entries.empty()) {
                addFiles(below_, entries, places);
            }
        }
    }

    void addFiles(const std::string& folder, const Entries& entries, Places& places) const {
        for (const std::string& fileName : fileNames_) {
            const Entry* const entry = findEntry(entries, fileName);
            if (entry != nullptr && entry->kind != Kind::folder) {
                const std::string path = joinPath(folder, fileName);
                if (isFile(path, entry->kind)) {
                    addFile(path, places);
                }
            }
        }
    }

    // Another file may be mounted over the one that is listed. What is listed counts when it is gone by now, for
    // example because it was renamed, and in a folder that may be listed but not entered.
    bool isFile(const std::string& path, Kind listed) const {
        try {
            return files_.kindOf(path).value_or(listed) == Kind::file;
        } catch (const std::system_error& error) {
            if (listed == Kind::link || error.code() != std::errc::permission_denied) {
                throw;
            }
            return listed == Kind::file;
        }
    }

    template <typename Accepts>
    Entries list(const std::string& folder, Accepts accepts) const {
        return files_.entries(folder, {accepts, fileNames_}).value_or(Entries());
    }

    bool isFileName(std::string_view name) const {
        // Called for every name in every folder. The first letter already excludes most.
        return !name.empty() && name.front() == classFolder_[1]
               && std::find(fileNames_.begin(), fileNames_.end(), name) != fileNames_.end();
    }

    const FileTree& files_;
    std::vector<std::string> packages_;
    std::string classFolder_;            // of the class that the symbol may be
    std::vector<std::string> fileNames_; // with each extension
    mutable std::string below_;          // reused for its memory
};

void addIfFile(const std::string& path, const FileTree& files, Places& places) {
    if (files.kindOf(path) == Kind::file) {
        addFile(path, places);
    }
}

// The files of a name with "/".
void addPathFiles(const std::string& name, const Installation& installation, const FileTree& files, Places& places) {
    if (name.starts_with('/')) {
        addIfFile(name, files, places);
        return;
    }
    for (const std::string& folder : installation.searchPath) {
        const std::string path = joinPath(folder, name);
        addIfFile(path, files, places);
        for (const std::string& extension : installation.extensions) {
            addIfFile(std::string(path).append(".").append(extension), files, places);
        }
    }
}

// Nothing for a name that no file has.
std::optional<SymbolSearch> searchFor(std::string_view symbol, const Installation& installation,
                                      const FileTree& files) {
    std::vector<std::string> parts = split(symbol, '.');
    const bool isComplete = std::find(parts.begin(), parts.end(), "") == parts.end();
    return isComplete ? std::optional<SymbolSearch>(std::in_place, std::move(parts), installation.extensions, files)
                      : std::nullopt;
}

} // namespace

void addBuiltins(std::u16string_view name, const std::vector<Builtin>& builtins, std::vector<FoundPlace>& places) {
    if (name.find(u'.') != std::u16string_view::npos) {
        return;
    }
    for (const Builtin& builtin : builtins) {
        if (builtin.name == name && builtin.className.empty()) {
            places.push_back({u"built-in (" + builtin.name + u")", {}});
        }
    }
    for (const Builtin& builtin : builtins) {
        if (builtin.name == name && !builtin.className.empty()) {
            places.push_back({builtin.name + u" is a built-in method",
                              builtin.className + (builtin.constructor ? u" constructor" : u" method")});
        }
    }
}

NameSearch::NameSearch(const Installation& installation, const FileTree& files)
    : installation_(&installation), files_(&files) {}

std::vector<FoundPlace> NameSearch::find(std::u16string_view name) const {
    Places places;
    const bool isPath = name.find(u'/') != std::u16string_view::npos;
    if (const std::optional<std::string> text = toUTF8(name)) {
        if (isPath) {
            addPathFiles(*text, *installation_, *files_, places);
        } else if (const auto symbol = searchFor(*text, *installation_, *files_)) {
            for (const std::string& folder : installation_->searchPath) {
                symbol->search(folder, places);
            }
        }
    }
    if (!isPath) {
        addBuiltins(name, installation_->builtins, places);
    }
    return places;
}

void NameSearch::addSymbolFiles(std::string_view symbol, const std::string& searchFolder,
                                std::vector<FoundPlace>& places) const {
    if (const auto search = searchFor(symbol, *installation_, *files_)) {
        search->search(searchFolder, places);
    }
}

} // namespace tessgen::standalone
