// A candidate: one definition that a name may stand for.
#pragma once

#include <cstdint>
#include <string>

namespace tessgen::kelwhich {

// The kind of a candidate. The values are part of the interface: they never change.
enum class WhichResultType : std::uint32_t {
    KELPath = 0,            // a file on the KEL path
    KELBuiltin = 1,         // a KEL built-in
    ORVAKPath = 2,          // a file that the host finds and that is not on the KEL path
    ORVAKBuiltin = 3,       // a host built-in
    ORVAKBuiltinMethod = 4, // a host built-in that is a method of a class, and not its constructor
};

struct WhichResult {
    // UTF-16. A file's path; for a KEL built-in, the path in its support record; for a host built-in, the name that
    // was looked up.
    std::u16string path;
    WhichResultType type;

    friend bool operator==(const WhichResult&, const WhichResult&) = default;
};

} // namespace tessgen::kelwhich
