// Fits tables into the width of the terminal.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tessgen::cli {

inline constexpr std::size_t unlimitedColumns = static_cast<std::size_t>(-1);

// The columns of the terminal that standard output is, at least 60; `unlimitedColumns` when it is none, or its width is
// not known. Asked once.
std::size_t outputColumns();

// `text`, which is UTF-8, with "…" in place of its middle when it takes more columns. The end, which tells paths apart,
// keeps two thirds.
//   "/home/me/tools/wave.vk", 12 -> "/ho…/wave.vk"
std::string shortened(std::string text, std::size_t columns);

// The texts shortened, or as they are if two different ones would become alike.
std::vector<std::string> shortened(std::vector<std::string> texts, std::size_t columns);

} // namespace tessgen::cli
