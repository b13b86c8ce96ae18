// Changes a JSON text that people wrote, and leaves every other byte as it is.
//
// Threads: any.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// The text of an object, with `elements` (JSON texts) at the end of its list `key`. The list is added when it is
// missing. New elements are laid out like the last one.
//   {"a": [1, 2]}, "a", {"3"} -> {"a": [1, 2, 3]}
//   {"b": 1}, "a", {"3"}      -> {"b": 1, "a": [3]}
// The text must be JSON; the value of the key, a list.
[[nodiscard]] std::string withElements(std::string text, const std::string& key,
                                       const std::vector<std::string>& elements);

// The text of an object, with one more member at its end. `value` is a JSON text.
[[nodiscard]] std::string withMember(std::string text, const std::string& key, const std::string& value);

} // namespace tessgen::standalone
