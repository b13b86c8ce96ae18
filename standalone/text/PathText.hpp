// Paths as UTF-8 text. They are made in one way, since everything later compares them as text.
//
// Every function is lexical: "/" is the only separator, and the disk is not read.
// Threads: any.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// Lexical: `rest` below `folder`, with one "/" between them.
//   "/w", "f.vk" -> "/w/f.vk"
//   "/", "f.vk"  -> "/f.vk"
[[nodiscard]] std::string joinPath(std::string_view folder, std::string_view rest);
// The same, into `path`, whose memory is reused.
void joinPath(std::string& path, std::string_view folder, std::string_view rest);

// Lexical: the absolute form of `path`, relative to the absolute folder `base`, without ".", "..", repeated "/" and a
// "/" at the end. The root's parent is the root.
//   "lib/./a//", "/w" -> "/w/lib/a"
//   "../x", "/w/a"    -> "/w/x"
//   "/h/", "/w"       -> "/h"
//   "..", "/w"        -> "/"
[[nodiscard]] std::string absolutePath(std::string_view path, std::string_view base);

// Lexical: whether the absolute `path` lies below the absolute `folder`, at any depth.
//   "/w/a/f.vk", "/w" -> true
//   "/w", "/w"        -> false
//   "/wa/f.vk", "/w"  -> false
//   "/f.vk", "/"      -> true
[[nodiscard]] bool isBelow(std::string_view path, std::string_view folder);

// Whether a folder of that name is a package, class or private folder, and whether it is one of the latter two. These
// are removed from a file's path before its folder is compared.
[[nodiscard]] bool isPackageClassOrPrivate(std::string_view name);
[[nodiscard]] bool isClassOrPrivate(std::string_view name);

// Lexical: whether a file of that name is a source file, by its extension.
//   "f.vk", {"vk"}    -> true
//   ".vk", {"vk"}     -> false
//   "f.a.vk", {"vk"}  -> true
//   "f.VK", {"vk"}    -> false
[[nodiscard]] bool hasExtension(std::string_view name, const std::vector<std::string>& extensions);

} // namespace tessgen::standalone
