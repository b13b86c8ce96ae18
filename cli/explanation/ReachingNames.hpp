// The names that reach a file: resolving, turned around.
//
// Texts are UTF-8 and not escaped.
// Threads: one.
#pragma once

#include "standalone/doctor/NamesByFile.hpp"
#include "standalone/search/SearchForms.hpp"
#include "tessgen/kelwhich/Explanation.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tessgen::cli {

// A plain or dotted name with the file among its candidates.
struct ReachingName {
    std::string name;
    kelwhich::WhichResult result;                   // the file, as the candidate has it
    std::size_t rank;                               // of the candidate
    std::vector<std::string> before;                // the candidates before it
    std::optional<std::string> redirectedTo;        // the name in whose list it stands, for a redirect
    kelwhich::Explanation::Source source;           // among the answers about the name in whose list it stands
    std::optional<standalone::SearchForm> searched; // how the host found it; none for a record
};

struct Reached {
    std::string file;                // as given
    std::vector<ReachingName> names; // sorted by name, then by rank
    std::vector<std::string> paths;  // names with "/" that reach it: the usual ones, of many
    bool isMissing;                  // there is no such file
};

class ReachingNames {
public:
    // `session` has a snapshot. Errors: those of NamesByFile.
    // Lifetime: both outlive it.
    ReachingNames(const standalone::SessionState& session, const kelwhich::KELWhichResolver& resolver);

    // What reaches `file`. A relative path is relative to the working folder. A file that is a link stands for itself;
    // without a name for this very path, names for the same file of the same folder by links count.
    // Errors: those of the resolver for a name that may reach it; a path that is empty or not UTF-8.
    Reached find(const std::string& file);

private:
    template <typename Predicate>
    std::vector<ReachingName> namesFor(const std::set<std::string>& names, Predicate isIt) const;
    const std::set<std::string>& redirectedTo(const std::string& fileName);
    [[nodiscard]] std::vector<std::string> pathsFor(const std::u16string& path) const;

    const standalone::SessionState& session_;
    const kelwhich::KELWhichResolver& resolver_;
    const standalone::NamesByFile known_;
    std::optional<std::map<std::string, std::set<std::string>>> redirected_; // names of redirects, by file names
};

} // namespace tessgen::cli
