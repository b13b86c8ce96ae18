// What --require asks of the answer to every name.
#pragma once

#include <string_view>

namespace tessgen::cli {

struct Requirement {
    bool user = false;      // the preferred candidate is the user's own
    bool supported = false; // code can be generated for the preferred candidate
    bool single = false;    // there is one candidate
};

// Adds what an argument of --require asks: one of its words, or several with "," between them.
// Errors: std::runtime_error for any other word.
void addRequirements(Requirement& requirement, std::string_view words);

} // namespace tessgen::cli
