// What the order of preference asks of one candidate, beyond what the collaborators know.
//
// Threads: any; pure.
#pragma once

#include "tessgen/kelwhich/WhichResult.hpp"

#include <string>

namespace tessgen::kelwhich {

// True for built-ins of every kind, and for a file whose extension is one of the host language's.
bool isBuiltinOrSourceFile(const WhichResult& result);

// True when the candidate is not a direct definition of the plain name `name`: a method that the host brings, or a
// file that defines another name. No candidate of a dotted name or of a path is indirect.
bool isIndirectResult(const WhichResult& result, const std::u16string& name);

// True when the file at `path` does not define the plain name `name`: its qualified name is another one, or it is a
// method in the folder of another class. False for a dotted name and for a path.
bool definesDifferentName(const std::u16string& path, const std::u16string& name);

inline bool definesDifferentName(const WhichResult& result, const std::u16string& name) {
    return definesDifferentName(result.path, name);
}

} // namespace tessgen::kelwhich
