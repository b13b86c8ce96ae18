// A line of a records file: one support record and the names that it is found by.
//
// Threads: any.
#pragma once

#include "tessapp/internal/screener/meta/SupportEntry.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

struct SupportRecord {
    tessapp::internal::screener::meta::SupportEntry entry;
    std::vector<std::u16string> names; // at least one, none of them twice, in the line's order
};

// Reads a JSON object with the keys `path`, `name`, `builtin`, `redirect`, `symbol`, `supportFlags` and
// `unsupportedSymbols`. A relative path is joined to `root` (absolute, UTF-8) unless the record is built-in. Without
// `name`, a file has the name that its path defines and a built-in its path; without `symbol`, it is the first name.
// Errors: std::runtime_error, one line: the key and what was expected of it; JsonSyntaxError.
SupportRecord readSupportRecord(std::string_view line, std::string_view root);

// The line (without an end) from which `readSupportRecord` with the same root reads this record; what it would add by
// itself is left out, and a path below the root is relative, so that the line does for another root as well.
// Errors: std::runtime_error: a text with a lone surrogate, which no line can hold; `readSupportRecord` gives none.
std::string writeSupportRecord(const SupportRecord& record, std::string_view root);

} // namespace tessgen::standalone
