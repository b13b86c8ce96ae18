// Gathers the names of a report: what each stands for, where that lies, and its explanation.
//
// Threads: one.
#pragma once

#include "cli/installation/ResolverSession.hpp"
#include "cli/reports/Report.hpp"
#include "tessgen/kelwhich/Explanation.hpp"

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace tessgen::cli {

class ReportedNames {
public:
    // Of the open installation: its search path, its KEL folders and the two kinds of built-ins are the places.
    // Lifetime: `resolver` outlives it.
    explicit ReportedNames(const ResolverSession& resolver);

    // A name that was added before stays as it is.
    // Errors: std::runtime_error when a text is not UTF-16.
    void add(const kelwhich::Explanation& explanation);

    // Gives the report all names, sorted.
    void moveTo(Report& report);

private:
    std::size_t addFolder(const std::string& folder);
    std::size_t folderOf(const kelwhich::WhichResult& result);

    const ResolverSession& resolver_;
    std::map<std::string, ReportedName> names_;
    std::vector<std::string> folders_;
    std::unordered_map<std::string, std::size_t> places_; // of the folders
};

} // namespace tessgen::cli
