// The names that a program uses, as a file lists them.
#pragma once

#include "cli/checking/SourceFiles.hpp"
#include "cli/reports/Report.hpp"

#include <string>
#include <vector>

namespace tessgen::cli {

struct Use {
    std::u16string name;
    UsePlace place;
};

struct Uses {
    std::vector<Use> all;         // sorted by place, then by name; each once
    std::vector<Skipped> skipped; // lines
};

// Reads a line for each use: a name, or FILE:LINE:COLUMN, a TAB and the name. "-" is standard input; `end` ends a line.
// A relative FILE is meant in the working folder.
// Errors: those of LineReader.
Uses readUses(const std::string& file, char end);

} // namespace tessgen::cli
