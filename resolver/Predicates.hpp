// What the order of preference asks of one candidate, beyond what the collaborators know.
//
// Threads: any; pure.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"
#include "tessgen/kelwhich/WhichResult.hpp"

#include <string>

namespace tessgen::kelwhich {

inline bool isFile(const WhichResult& result) noexcept {
    return result.type == WhichResultType::KELPath || result.type == WhichResultType::ORVAKPath;
}

// True for built-ins of every kind, and for a file whose extension is one of the host language's.
bool isBuiltinOrSourceFile(const WhichResult& result);

// Whether the candidate defines the plain name `name`, and if not, why. Anything else than `direct` is indirect; no
// candidate of a dotted name or of a path is.
Explanation::Definition definitionBy(const WhichResult& result, const std::u16string& name);

// The same of the file at `path`: its qualified name may be another one, or it may be a method in the folder of
// another class.
Explanation::Definition definitionAt(const std::u16string& path, const std::u16string& name);

inline bool isIndirectResult(const WhichResult& result, const std::u16string& name) {
    return definitionBy(result, name) != Explanation::Definition::direct;
}

inline bool definesDifferentName(const std::u16string& path, const std::u16string& name) {
    return definitionAt(path, name) != Explanation::Definition::direct;
}

inline bool definesDifferentName(const WhichResult& result, const std::u16string& name) {
    return definesDifferentName(result.path, name);
}

} // namespace tessgen::kelwhich
