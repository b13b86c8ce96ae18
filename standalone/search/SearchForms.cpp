#include "standalone/search/SearchForms.hpp"

#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <string>

namespace tessgen::standalone {

std::vector<const FileTree::Entry*> classFolders(const std::vector<FileTree::Entry>& entries) {
    std::vector<const FileTree::Entry*> sorted;
    sorted.reserve(entries.size());
    for (const FileTree::Entry& entry : entries) {
        if (entry.name.starts_with('@') && isUTF8(entry.name)) {
            sorted.push_back(&entry);
        }
    }
    std::sort(sorted.begin(), sorted.end(),
              [](const auto* a, const auto* b) { return isBeforeInUTF16(a->name, b->name); });
    return sorted;
}

SearchForm formOf(std::string_view symbol, std::string_view path) {
    const auto parts = split(symbol, '.');
    const auto names = split(path, '/');
    const auto above = [&names](std::size_t levels) { // the name of the folder so many levels above the file
        return names.size() > levels + 1 ? std::string_view(names[names.size() - 1 - levels]) : std::string_view();
    };
    const bool isDotted = parts.size() > 1;
    if (above(1) == "@" + parts.back() && (!isDotted || above(2) == "+" + parts[parts.size() - 2])) {
        return SearchForm::ownClass;
    }
    if (above(1).starts_with('@')) {
        return isDotted ? SearchForm::packageClass : SearchForm::otherClasses;
    }
    return !isDotted && above(1) == "private" ? SearchForm::privateFolder : SearchForm::folder;
}

} // namespace tessgen::standalone
