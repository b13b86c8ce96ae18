// The codes of findings: what each means, how grave it is, and what to do about it.
#pragma once

#include "analysis/Finding.hpp"

#include <array>
#include <string_view>

namespace tessgen::analysis {

struct Rule {
    std::string_view code;    // never changes
    Level level;              // of most findings
    std::string_view message; // a sentence
    std::string_view advice;  // a sentence
};

namespace rule {

inline constexpr Rule noCandidate{
    "no-candidate", Level::error, "Nothing is found under a name that is used.",
    "Correct the name, define it, or put the folder of its definition on the search path."};
// A note about a definition.
inline constexpr Rule unsupported{
    "unsupported", Level::error, "Code cannot be generated for what is preferred.",
    "Use a supported definition; or, if code can be generated for this one, correct its record."};
inline constexpr Rule missingFile{"missing-file", Level::error, "What is preferred does not exist.",
                                  "Create the file; or remove its record, and rebuild the store."};
inline constexpr Rule hidesSupported{
    "hides-supported", Level::warning, "What is preferred is not supported, and comes before a supported definition.",
    "If a supported one is meant, rename the first, or take its folder off the search path."};
inline constexpr Rule hidden{"hidden", Level::warning, "A definition is not the first under its own name.",
                             "Rename one of the two; or remove this one, if it is not needed."};
inline constexpr Rule hidesHost{"hides-host", Level::note,
                                "A user's file comes before a definition of the host or of the code generator.",
                                "If the other one is meant, rename yours."};
inline constexpr Rule orderOnly{"order-only", Level::warning,
                                "The first two definitions differ only in the order in which they were found.",
                                "Keep one of the two, or see that the order is the one that is meant."};
inline constexpr Rule onlyIndirect{"only-indirect", Level::warning, "Every candidate defines another name.",
                                   "Define the name itself; or correct the names of the record."};
// Each obstacle has its own advice.
inline constexpr Rule unreachable{"unreachable", Level::warning, "No plain or dotted name leads to the definition.",
                                  "Remove what keeps names from it."};
inline constexpr Rule redirectIgnored{
    "redirect-ignored", Level::warning, "A redirect does not count, since its record's file defines another name.",
    "Redirect by the record of a file that defines the name, or remove the redirect."};
inline constexpr Rule redirectDead{"redirect-dead", Level::warning, "A redirect leads to nothing.",
                                   "Correct the target of the redirect, or remove the redirect from the record."};

inline constexpr Rule staleBaseline{"stale-baseline", Level::note, "A line of the baseline matches no finding.",
                                    "Remove the line, or write the baseline anew with --update-baseline."};

} // namespace rule

// All of them, the errors first.
inline constexpr std::array rules = {rule::noCandidate, rule::unsupported,     rule::missingFile,  rule::hidesSupported,
                                     rule::hidden,      rule::hidesHost,       rule::orderOnly,    rule::onlyIndirect,
                                     rule::unreachable, rule::redirectIgnored, rule::redirectDead, rule::staleBaseline};

} // namespace tessgen::analysis
