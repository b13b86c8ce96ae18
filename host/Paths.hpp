// Paths as text: folders, file names, class and package folders, and the name that a file defines.
//
// Every function is lexical: "/" is the only separator, the disk is never looked at, every text has an answer.
// Threads: any.
// Lifetime: views returned are views into the text that was passed.
#pragma once

#include "tessgen/kelwhich/ClassFolderInfo.hpp"

#include <cstring>
#include <string>
#include <string_view>

namespace tessgen::kelwhich {

// The same code units. Faster than ==, which goes unit by unit in this standard library.
inline bool equal(std::u16string_view a, std::u16string_view b) noexcept {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0);
}

// Lexical: a plain prefix, wherever its last folder ends.
//   "/h/tbx/f.vk", "/h/tb" -> true
//   "/h", "/h/tb"          -> false
//   "/h", ""               -> true
inline bool beginsWith(std::u16string_view text, std::u16string_view prefix) noexcept {
    return text.size() >= prefix.size() && equal(text.substr(0, prefix.size()), prefix);
}

// Lexical: `text` with the prefix `from`, if it has it, replaced by `to`.
//   "/h/f.vk", "/h", "/s"  -> "/s/f.vk"
//   "/hx/f.vk", "/h", "/s" -> "/sx/f.vk"
//   "/w/f.vk", "/h", "/s"  -> "/w/f.vk"
std::u16string replacePrefix(std::u16string_view text, std::u16string_view from, std::u16string_view to);

// Lexical: what stands before the last "/".
//   "/w/f.vk" -> "/w"
//   "/a"      -> ""
//   "a"       -> ""
std::u16string_view parentDirectory(std::u16string_view path) noexcept;

// Lexical: what stands after the last "/".
//   "/w/f.vk" -> "f.vk"
//   "/a/"     -> ""
//   "a"       -> "a"
std::u16string_view fileName(std::u16string_view path) noexcept;

// Lexical: what stands after the last ".", even when that is in a folder's name.
//   "/w/a.b.vk" -> "vk"
//   "/w/d.x/f"  -> "x/f"
//   "a."        -> ""
//   "a"         -> ""
std::u16string_view fileExtension(std::u16string_view path) noexcept;

// Lexical: the file name before its last ".".
//   "/w/a.b.vk" -> "a.b"
//   "/w/.vk"    -> ""
//   "/d.x/f"    -> "f"
std::u16string_view fileStem(std::u16string_view path) noexcept;

// Lexical: whether the text is a path rather than a symbol.
//   "a/b" -> true
//   "a.b" -> false
bool containsSeparator(const std::u16string& text) noexcept;

// Lexical: the folder above all package and class folders that a file lies in, one "private" folder directly above
// the file passed over.
//   "/w/+p/+q/@C/private/f.vk" -> "/w"
//   "/w/private/+p/f.vk"       -> "/w/private"
//   "/w/f.vk"                  -> "/w"
//   "f.vk"                     -> ""
std::u16string_view packageRootFolder(std::u16string_view path) noexcept;

// Lexical: the dotted name that a file defines; a text without "/" is a name already.
//   "/w/+p/+q/f.vk"     -> "p.q.f"
//   "/w/+p/@C/C.vk"     -> "p.C"
//   "/w/+p/@C/area.vk"  -> "area"
//   "/w/@C/private/h.vk"-> "h"
//   "/w/@C/+p/f.vk"     -> "C.p.f"
//   "sum"               -> "sum"
std::u16string qualifiedNameForPath(const std::u16string& text);

// Lexical: whether that name, which is not made for it, is `name`, which has no ".".
//   "/w/@C/C.vk", "C"    -> true
//   "/w/+p/@C/C.vk", "C" -> false
bool definesPlainName(std::u16string_view text, std::u16string_view name);

} // namespace tessgen::kelwhich
