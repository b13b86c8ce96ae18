// What a command found, as every format of a report shows it.
//
// Threads: plain values.
#pragma once

#include "analysis/Finding.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

// A kind of finding. Formats that list them say so which were looked for, found or not.
struct Rule {
    std::string_view code;
    analysis::Level level;
    std::string_view message; // a sentence
    std::string_view advice;  // a sentence
};

struct Report {
    std::string_view command;
    std::vector<Rule> rules; // one for each code among the findings, at least
    std::vector<analysis::Finding> findings;
    std::string folder;   // absolute; paths below it are shown relative to it
    std::string manifest; // the place of a finding about something that is not a file
};

// The working folder, as `Report::folder`; "/" when it is unknown.
std::string workingFolder();

// A finding with its texts in UTF-8.
struct ReportedFinding {
    const analysis::Finding* finding;
    std::string name;
    std::string file;        // relative or absolute, unescaped
    std::string other;       // a file likewise, or a built-in; may be empty
    std::string message;     // escaped
    std::string text;        // a sentence that names `other`, and the advice; escaped
    std::string fingerprint; // same for the same code, name and files as shown; none is there twice
};

// In the order of the findings.
std::vector<ReportedFinding> reported(const Report& report);

} // namespace tessgen::cli
