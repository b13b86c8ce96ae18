// Paths as text: folders, file names, class and package folders, and the name that a file defines.
//
// Every function is lexical: "/" is the only separator, the disk is never read, and every text has an answer.
// Threads: any.
// Lifetime: views returned are views into the text that was passed.
#pragma once

#include "tessgen/kelwhich/ClassFolderInfo.hpp"

#include <cstring>
#include <string>
#include <string_view>

namespace tessgen::kelwhich {

// True for the same code units. Faster than ==, which compares unit by unit in this standard library.
[[nodiscard]] inline bool equal(std::u16string_view a, std::u16string_view b) noexcept {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0);
}

// Lexical: a plain prefix test, whether or not a folder's name ends there.
//   "/h/tbx/f.vk", "/h/tb" -> true
//   "/h", "/h/tb"          -> false
//   "/h", ""               -> true
[[nodiscard]] inline bool beginsWith(std::u16string_view text, std::u16string_view prefix) noexcept {
    return text.size() >= prefix.size() && equal(text.substr(0, prefix.size()), prefix);
}

// Lexical: replaces the prefix `from` by `to`; a text without the prefix is returned as it is.
//   "/h/f.vk", "/h", "/s"  -> "/s/f.vk"
//   "/hx/f.vk", "/h", "/s" -> "/sx/f.vk"
//   "/w/f.vk", "/h", "/s"  -> "/w/f.vk"
[[nodiscard]] std::u16string replacePrefix(std::u16string_view text, std::u16string_view from, std::u16string_view to);

// Lexical: the text before the last "/".
//   "/w/f.vk" -> "/w"
//   "/a"      -> ""
//   "a"       -> ""
[[nodiscard]] std::u16string_view parentDirectory(std::u16string_view path) noexcept;

// Lexical: the text after the last "/".
//   "/w/f.vk" -> "f.vk"
//   "/a/"     -> ""
//   "a"       -> "a"
[[nodiscard]] std::u16string_view fileName(std::u16string_view path) noexcept;

// Lexical: the text after the last ".", even when that lies in a folder's name.
//   "/w/a.b.vk" -> "vk"
//   "/w/d.x/f"  -> "x/f"
//   "a."        -> ""
//   "a"         -> ""
[[nodiscard]] std::u16string_view fileExtension(std::u16string_view path) noexcept;

// Lexical: the file name before its last ".".
//   "/w/a.b.vk" -> "a.b"
//   "/w/.vk"    -> ""
//   "/d.x/f"    -> "f"
[[nodiscard]] std::u16string_view fileStem(std::u16string_view path) noexcept;

// Lexical: whether the text is a path rather than a symbol.
//   "a/b" -> true
//   "a.b" -> false
[[nodiscard]] bool containsSeparator(const std::u16string& text) noexcept;

// Lexical: the folder above all package and class folders of a file. One "private" folder directly above the file is
// skipped.
//   "/w/+p/+q/@C/private/f.vk" -> "/w"
//   "/w/private/+p/f.vk"       -> "/w/private"
//   "/w/f.vk"                  -> "/w"
//   "f.vk"                     -> ""
[[nodiscard]] std::u16string_view packageRootFolder(std::u16string_view path) noexcept;

// Lexical: the dotted name that a file defines; a text without "/" is a name already.
//   "/w/+p/+q/f.vk"     -> "p.q.f"
//   "/w/+p/@C/C.vk"     -> "p.C"
//   "/w/+p/@C/area.vk"  -> "area"
//   "/w/@C/private/h.vk"-> "h"
//   "/w/@C/+p/f.vk"     -> "C.p.f"
//   "sum"               -> "sum"
[[nodiscard]] std::u16string qualifiedNameForPath(const std::u16string& text);

// Same as `qualifiedNameForPath(text) == name` for a `name` without ".", without allocating.
//   "/w/@C/C.vk", "C"    -> true
//   "/w/+p/@C/C.vk", "C" -> false
[[nodiscard]] bool definesPlainName(std::u16string_view text, std::u16string_view name);

} // namespace tessgen::kelwhich
