// The parts of an HTML report. The page itself, with its style sheet and script, is in cli/reports/html/.
//
// The page needs no network and can be read without its script. Long tables are cut into parts, of which a browser lays
// out only those in view.
// Threads: any.
#pragma once

#include "cli/reports/Report.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

// "{{command}}" and the like stand for what differs from report to report.
extern const std::string_view htmlPage;

// A table for each 250 of `rows`, each with a head of `columns`, which are its cells. Only the first head is seen, or
// none when the same head is seen elsewhere; the others are for screen readers.
enum class FirstHead { isShown, isElsewhere };
std::string htmlTables(std::string_view group, const std::vector<std::string>& columns,
                       const std::vector<std::string>& rows, FirstHead firstHead);

// The matrix of names by folders; nothing for a report without names.
std::string htmlNames(const Report& report);

// The explanation of each name, which a link to "#n" and the number of the name shows.
std::string htmlExplanations(const Report& report);

} // namespace tessgen::cli
