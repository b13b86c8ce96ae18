// What changed of what a name stands for, between two locks.
//
// Threads: any.
#pragma once

#include "analysis/Lock.hpp"
#include "analysis/Rules.hpp"

#include <span>
#include <string>
#include <vector>

namespace tessgen::analysis {

// One for each kind of change.
extern const std::span<const Rule> changeRules;

struct Change {
    Finding finding; // about the candidate after the change, with the one before it; paths as in the locks
    bool isAboutFile;
    // These two in words, with what is known of them: "mine/wave.vk, the user's own, not supported"
    std::u16string before;
    std::u16string after;
};

// Of one name, which has no candidates in a lock without its line; empty when nothing changed. At most one change of
// the candidates and their order, one of their support, and one of their files; or else one of the reasons.
[[nodiscard]] std::vector<Change> changesOf(const LockedName& before, const LockedName& after);

} // namespace tessgen::analysis
