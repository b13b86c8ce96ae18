// The names that an index may lack files of, because something could not be read. The disk is asked about them.
//
// Threads: const operations may be called concurrently.
#pragma once

#include "standalone/text/Hash.hpp"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace tessgen::standalone {

class IncompleteNames {
public:
    // Every name with the first part of `names`; "": every plain name.
    void add(std::string_view names) { firstParts_.emplace(names.substr(0, names.find('.'))); }
    // The same, because a folder or file was unreadable.
    void addUnreadable(std::string_view names) {
        add(names);
        hasUnreadable_ = true;
    }
    void addAllUnreadable() { isAll_ = hasUnreadable_ = true; }

    [[nodiscard]] bool isEmpty() const { return !isAll_ && firstParts_.empty(); }
    [[nodiscard]] bool contains(std::string_view symbol) const {
        const std::size_t end = symbol.find('.');
        return isAll_
               || (!firstParts_.empty()
                   && (firstParts_.contains(symbol.substr(0, end))
                       || (end == std::string_view::npos && firstParts_.contains(""))));
    }
    [[nodiscard]] bool hasUnreadable() const { return hasUnreadable_; }

private:
    std::unordered_set<std::string, TextHash, std::equal_to<>> firstParts_;
    bool isAll_ = false;
    bool hasUnreadable_ = false;
};

} // namespace tessgen::standalone
