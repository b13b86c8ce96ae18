// The names that an installation has an answer to, as far as they can be told in a given time.
//
// Threads: const operations may be called concurrently.
#pragma once

#include "standalone/services/SessionState.hpp"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

class SpellingSuggestions {
public:
    using Clock = std::chrono::steady_clock;

    // Of the files of the search path, the built-ins and the support records. What cannot be read, or would be read
    // after half the time until the deadline, is left out: the rest is for looking through the names.
    SpellingSuggestions(const SessionState& session, Clock::time_point deadline);

    // Those that are other than `name` by a slip or two, the nearest first and equally near ones in their order as
    // text; as far as they are found before the deadline.
    std::vector<std::string> similarTo(std::string_view name) const;

private:
    Clock::time_point deadline_;
    std::vector<std::string> names_; // UTF-8, some more than once
};

} // namespace tessgen::standalone
