// The built-ins of an installation by their names.
//
// Threads: const operations may be called concurrently.
#pragma once

#include "standalone/manifest/Installation.hpp"
#include "standalone/search/NameSearch.hpp"
#include "standalone/text/Hash.hpp"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessgen::standalone {

class BuiltinTable {
public:
    explicit BuiltinTable(const std::vector<Builtin>& builtins) {
        for (const Builtin& builtin : builtins) {
            groups_[builtin.name].push_back(builtin);
        }
    }

    // `addBuiltins` of these.
    void add(std::u16string_view name, std::vector<FoundPlace>& places) const {
        if (const auto group = groups_.find(name); group != groups_.end()) {
            addBuiltins(name, group->second, places);
        }
    }

private:
    std::unordered_map<std::u16string, std::vector<Builtin>, TextHash, std::equal_to<>> groups_;
};

} // namespace tessgen::standalone
