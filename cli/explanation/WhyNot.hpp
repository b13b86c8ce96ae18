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

    // One reason against it. With a key: the first candidate wins by that key.
    struct Obstacle {
        std::optional<kelwhich::Explanation::Key> key;
        std::string words; // UTF-8, not escaped
    };

    std::string path; // as given
    Place place;
    std::optional<std::string> candidate;  // the candidate's own path, where the same file was given by another
    std::optional<std::size_t> rank;       // of a candidate
    std::vector<Obstacle> obstacles;       // all would have to go; the most significant first
    std::optional<std::string> wouldWinBy; // why it would be first without them
};

// `path` is the path or name of a candidate, or a file relative to the working folder. If several candidates have that
// path, it stands for the first; if none has, but one is the same file of the same folder, it stands for that one. A
// file that is a link stands for itself. For a file that is not found, the obstacles include what would still come
// before it if it were. In a replay, reasons that need the disk or the installation are left out.
// Errors: those of `parseName`, of the collaborators and of the search on the disk.
WhyNot whyNot(const std::string& path, const kelwhich::Explanation& explanation, const ResolverSession& resolver);

} // namespace tessgen::cli
