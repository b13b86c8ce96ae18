// What can be judged of a candidate by its text alone.
//
// Threads: any; pure.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"
#include "tessgen/kelwhich/WhichResult.hpp"

#include <string>

namespace tessgen::kelwhich {

[[nodiscard]] inline bool isFile(const WhichResult& result) noexcept {
    return result.type == WhichResultType::KELPath || result.type == WhichResultType::ORVAKPath;
}

// A kind outside the five counts as neither; it is judged as a file is, by its path.
[[nodiscard]] inline bool isBuiltin(const WhichResult& result) noexcept {
    return result.type == WhichResultType::KELBuiltin || result.type == WhichResultType::ORVAKBuiltin
           || result.type == WhichResultType::ORVAKBuiltinMethod;
}

// True for built-ins of every kind, and for a file whose extension is one of the host language's.
[[nodiscard]] bool isBuiltinOrSourceFile(const WhichResult& result);

// Whether the candidate defines the plain name `name`, and if not, why. Every candidate of a dotted name or of a path
// is `direct`.
[[nodiscard]] Explanation::Definition definitionBy(const WhichResult& result, const std::u16string& name);

// The same for the file at `path`.
[[nodiscard]] Explanation::Definition definitionAt(const std::u16string& path, const std::u16string& name);

[[nodiscard]] inline bool definesDifferentName(const std::u16string& path, const std::u16string& name) {
    return definitionAt(path, name) != Explanation::Definition::direct;
}

} // namespace tessgen::kelwhich
