#include "standalone/search/NameSearch.hpp"

#include "standalone/search/FolderNaming.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace tessgen::standalone {

namespace {

using Entries = std::vector<FileTree::Entry>;
using Entry = FileTree::Entry;
using Kind = FileTree::Kind;
using Places = std::vector<FoundPlace>;

// Folders and names are UTF-8 here: the manifest's are, and what the disk holds is compared with such names first.
void addFile(const std::string& path, Places& places) {
    places.push_back({toUTF16(path).value(), {}});
}

const Entry* findEntry(const Entries& entries, std::string_view name) {
    const auto position =
        std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.name == name; });
    return position == entries.end() ? nullptr : &*position;
}

// The files of one symbol, plain or with packages before it. A folder is listed once, and only when the folder above
// shows that it is there. Threads: one.
class SymbolQuestion {
public:
    // No part of the symbol is empty.
    SymbolQuestion(std::vector<std::string> parts, const Installation& installation, const FileTree& files)
        : files_(files), top_(installation.root), classFolder_("@" + parts.back()) {
        for (const std::string& extension : installation.extensions) {
            fileNames_.push_back(parts.back() + "." + extension);
        }
        parts.pop_back();
        packages_ = std::move(parts);
    }

    void search(const std::string& folder, Places& places) const {
        if (packages_.empty()) {
            searchPlain(folder, places);
        } else {
            searchPackages(folder, places);
        }
    }

private:
    void searchPlain(const std::string& folder, Places& places) const {
        const Entries entries = list(folder, [this](std::string_view name) {
            return name.starts_with('@') || name == "private" || isFileName(name);
        });
        addFilesBelow(folder, findEntry(entries, classFolder_), places);
        addFiles(folder, entries, places);
        for (const Entry* entry : classFolders(entries)) {
            if (entry->name != classFolder_) {
                addFilesBelow(folder, entry, places);
            }
        }
        addFilesBelow(folder, findEntry(entries, "private"), places);
    }

    void searchPackages(std::string folder, Places& places) const {
        for (std::size_t depth = 0; depth + 1 < packages_.size(); ++depth) {
            const std::string package = "+" + packages_[depth];
            const Entries entries = list(folder, [&](std::string_view name) { return name == package; });
            if (!leadsTo(Kind::folder, files_, folder, findEntry(entries, package))) {
                return;
            }
            folder = joinPath(folder, package);
        }
        const std::string package = "+" + packages_.back();
        const std::string classFolder = "@" + packages_.back();
        const Entries entries =
            list(folder, [&](std::string_view name) { return name == package || name == classFolder; });
        if (leadsTo(Kind::folder, files_, folder, findEntry(entries, package))) {
            searchPackage(joinPath(folder, package), places);
        }
        addFilesBelow(folder, findEntry(entries, classFolder), places);
    }

    void searchPackage(const std::string& folder, Places& places) const {
        const Entries entries =
            list(folder, [this](std::string_view name) { return name == classFolder_ || isFileName(name); });
        addFilesBelow(folder, findEntry(entries, classFolder_), places);
        addFiles(folder, entries, places);
    }

    // The symbol's files in the folder that an entry of `folder` (or none) leads to.
    void addFilesBelow(const std::string& folder, const Entry* entry, Places& places) const {
        if (leadsTo(Kind::folder, files_, folder, entry)) {
            joinPath(below_, folder, entry->name);
            const Entries entries = list(below_, [this](std::string_view name) { return isFileName(name); });
            if (!entries.empty()) { // as for most
                addFiles(below_, entries, places);
            }
        }
    }

    void addFiles(const std::string& folder, const Entries& entries, Places& places) const {
        for (const std::string& fileName : fileNames_) {
            if (leadsTo(Kind::file, files_, folder, findEntry(entries, fileName))) {
                addFile(joinPath(folder, fileName), places);
            }
        }
    }

    template <typename Wants>
    Entries list(const std::string& folder, Wants wants) const {
        FileTree::Filter wanted(wants, std::string_view(classFolder_).substr(1));
        wanted.walkFrom(top_);
        return files_.entries(folder, wanted).value_or(Entries());
    }

    bool isFileName(std::string_view name) const {
        // Of most names the first letter tells already; this is asked for every name in every folder.
        return !name.empty() && name.front() == classFolder_[1]
               && std::find(fileNames_.begin(), fileNames_.end(), name) != fileNames_.end();
    }

    const FileTree& files_;
    const DirectoryHandle top_; // that most of the search path lies in
    std::vector<std::string> packages_;
    std::string classFolder_;            // of the class that the symbol may be
    std::vector<std::string> fileNames_; // with each extension
    mutable std::string below_;          // the folder that is looked into, in memory that is used again
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

void addSymbolFiles(std::string_view name, const Installation& installation, const FileTree& files, Places& places) {
    std::vector<std::string> parts = split(name, '.');
    if (std::find(parts.begin(), parts.end(), "") != parts.end()) {
        return;
    }
    const SymbolQuestion question(std::move(parts), installation, files);
    for (const std::string& folder : installation.searchPath) {
        question.search(folder, places);
    }
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
        } else {
            addSymbolFiles(*text, *installation_, *files_, places);
        }
    }
    if (!isPath) {
        addBuiltins(name, installation_->builtins, places);
    }
    return places;
}

} // namespace tessgen::standalone
