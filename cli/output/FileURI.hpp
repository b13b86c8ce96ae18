// Paths as URIs, for programs that want these.
//
// Threads: any.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessgen::cli {

// Every byte but letters, digits, "-._~" and "/" as %XX.
//   a b/@C -> a%20b/%40C
std::string encodedPath(std::string_view path);

// Of an absolute path of any bytes: "file://" and the encoded path.
std::string fileURI(std::string_view path);

// The absolute path of a file URI of this machine, of any bytes but NUL; nothing for every other text. A query or a
// fragment is left out.
//   file:///a%20b, file://localhost/a%20b -> /a b
//   untitled:a, file://other/a, file:a    -> nothing
std::optional<std::string> pathOfURI(std::string_view uri);

} // namespace tessgen::cli
