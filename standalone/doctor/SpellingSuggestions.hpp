// Suggests names of an installation for a misspelt one, or for the beginning of one.
//
// Threads: const operations may be called concurrently.
#pragma once

#include "standalone/services/SessionState.hpp"

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// The largest edit distance at which another name may be what `name` was meant to be.
[[nodiscard]] std::size_t toleratedEdits(std::string_view name);

class SpellingSuggestions {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr Clock::time_point never = Clock::time_point::max();

    // Collects the names of the source files on the search path, of the built-ins and of the support records. Leaves
    // out what cannot be read, and what is not read in half the time until the deadline; the rest of the time is for
    // comparing names.
    explicit SpellingSuggestions(const SessionState& session, Clock::time_point deadline = never);

    // The names within a small edit distance of `name`, and those in a package of which the last parts are, the nearest
    // first, equally near ones ordered as text; as many as are found before the deadline.
    //   "z" -> "p.q.z"
    [[nodiscard]] std::vector<std::string> similarTo(std::string_view name) const;

    // The names that begin with `beginning`, in the order of their bytes.
    [[nodiscard]] std::vector<std::string> beginningWith(std::string_view beginning) const;

private:
    Clock::time_point deadline_;
    std::vector<std::string> names_; // UTF-8, some more than once
};

} // namespace tessgen::standalone
