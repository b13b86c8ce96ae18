// A file that defines a name, what its caller knows of it, and the rules about how names reach it.
#pragma once

#include "analysis/Finding.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessgen::analysis {

struct Definition {
    std::u16string path;               // absolute, of a file that exists
    std::vector<std::u16string> names; // the plain and dotted names with the file among their candidates, sorted

    // Why there may be no such name.
    bool hasSearchedExtension; // the search tries its extension
    bool isOnKELPath;
    bool isBelowSearchPath; // the folder above its package, class and private folders is on the search path
};

// The name that the definition is judged under: the one that it defines, unless only others reach it; then their first.
[[nodiscard]] std::u16string ownName(const Definition& definition);

// "unreachable": no plain or dotted name reaches the file.
[[nodiscard]] std::optional<Finding> unreachable(const Definition& definition);

// "hidden": `explanation`, of its own name, prefers another candidate. To be asked when names reach the file.
[[nodiscard]] std::optional<Finding> hidden(const Definition& definition, const kelwhich::Explanation& explanation);

} // namespace tessgen::analysis
