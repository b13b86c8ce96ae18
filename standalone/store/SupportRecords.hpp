// A line of a records file: one support record and the names that find it.
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
    std::vector<std::u16string> names; // at least one, none twice, in the order of the line
};

// Reads a JSON object with the keys `path`, `name`, `builtin`, `redirect`, `symbol`, `supportFlags` and
// `unsupportedSymbols`. The path of a file is made absolute, a relative one against `root` (absolute, UTF-8). Default
// of `name`: the name that the path defines, for a built-in its path. Default of `symbol`: the first name. Errors:
// std::runtime_error, one line: the key and what was expected; JsonSyntaxError.
[[nodiscard]] SupportRecord readSupportRecord(std::string_view line, std::string_view root);

// The line, without a line end, from which `readSupportRecord` with the same root reads this record. Defaults are left
// out, and a path below the root is relative, so the line also serves another root.
// Errors: std::runtime_error: a text with a lone surrogate. `readSupportRecord` returns no such record.
[[nodiscard]] std::string writeSupportRecord(const SupportRecord& record, std::string_view root);

} // namespace tessgen::standalone
