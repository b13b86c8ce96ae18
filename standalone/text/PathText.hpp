// Paths as UTF-8 text, made in one way, since everything later compares them as text.
//
// Every function is lexical: "/" is the only separator, the disk is never looked at.
// Threads: any.
#pragma once

#include <string>
#include <string_view>

namespace tessgen::standalone {

// Lexical: `rest` below `folder`, with one "/" between them.
//   "/w", "f.vk" -> "/w/f.vk"
//   "/", "f.vk"  -> "/f.vk"
std::string joinPath(std::string_view folder, std::string_view rest);
// The same in place of what `path` holds, whose memory is used again.
void joinPath(std::string& path, std::string_view folder, std::string_view rest);

// Lexical: the absolute path that `path` means in the absolute folder `base`, without ".", "..", repeated "/" and a
// "/" at its end. The root's parent is the root.
//   "lib/./a//", "/w" -> "/w/lib/a"
//   "../x", "/w/a"    -> "/w/x"
//   "/h/", "/w"       -> "/h"
//   "..", "/w"        -> "/"
std::string absolutePath(std::string_view path, std::string_view base);

// Whether a folder of that name is a package, class or private folder, which is taken off a file's path before its
// folder is compared.
bool isPackageClassOrPrivate(std::string_view name);

} // namespace tessgen::standalone
