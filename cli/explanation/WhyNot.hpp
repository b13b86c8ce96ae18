// Why a definition is not the first candidate of a name, or none at all.
#pragma once

#include "cli/installation/ResolverSession.hpp"
#include "tessgen/kelwhich/Explanation.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tessgen::cli {

struct WhyNot {
    enum class Place { first, behind, dropped, absent };

    // One thing that stands against it. With a key, it is behind the first candidate by that key.
    struct Obstacle {
        std::optional<kelwhich::Explanation::Key> key;
        std::string words; // UTF-8, not escaped
    };

    std::string path; // as it was asked for
    Place place;
    std::optional<std::size_t> rank;       // of a candidate
    std::vector<Obstacle> obstacles;       // the most significant first: all of them would have to go
    std::optional<std::string> wouldWinBy; // by what it would then be the first
};

// `path` is a candidate's text, or names a file as seen from the working folder; of several candidates with one path,
// the first is meant. In a replay, what only the disk and the installation could tell is left out.
// Errors: those of the collaborators, and of the search over the disk; a path that no name could be.
WhyNot whyNot(const std::string& path, const kelwhich::Explanation& explanation, const ResolverSession& resolver);

} // namespace tessgen::cli
