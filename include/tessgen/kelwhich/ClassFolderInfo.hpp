// The class folder that a file belongs to, read from its path.
//
// Lifetime: views into the path that was passed.
#pragma once

#include "tessgen/kelwhich/export.hpp"

#include <optional>
#include <string_view>

namespace tessgen::kelwhich {

struct ClassFolderInfo {
    std::u16string_view classFolder; // the path of the "@" folder, without a trailing "/"
    std::u16string_view className;   // the folder's name without its "@"; empty for a folder named "@"
};

// Lexical: the class folder of a file that lies directly in it, or in a "private" folder directly below it.
//   "/w/+p/@Shape/area.vk"     -> "/w/+p/@Shape", "Shape"
//   "/w/@C/private/f.vk"       -> "/w/@C", "C"
//   "@C/f.vk"                  -> "@C", "C"
//   "/w/@C/private/private/f"  -> nothing: one "private" is skipped, not two
//   "/w/+p/f.vk"               -> nothing
[[nodiscard]] KELWHICH_EXPORT std::optional<ClassFolderInfo> getClassFolderInfo(std::u16string_view path);

} // namespace tessgen::kelwhich
