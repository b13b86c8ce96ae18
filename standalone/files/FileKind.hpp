// Recognises the files that this program reads, for an error about one where another is expected.
//
// Threads: any.
#pragma once

#include <string>
#include <string_view>

namespace tessgen::standalone {

// "support records", "a manifest", "a recording", "a support store" or "a search index"; empty when the file is none of
// these or cannot be read. Looks at the first bytes, and in a database at the entry that describes it.
[[nodiscard]] std::string kindOfFile(const std::string& path);

// To follow an error about a file that should be `expected`: "; the file holds support records, not a manifest". Empty
// when the file is as expected or is not recognised.
[[nodiscard]] std::string noteOnKind(const std::string& path, std::string_view expected);

} // namespace tessgen::standalone
