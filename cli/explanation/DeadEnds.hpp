// What leads on from names without a candidate, for a person.
#pragma once

#include "cli/explanation/RenderExplanation.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/options/CommandLine.hpp"
#include "standalone/doctor/SpellingSuggestions.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessgen::cli {

// The search path, with what is wrong with its folders now; a recording does not know that.
std::vector<SearchedFolder> searchedFolders(const ResolverSession& resolver);

struct DeadEnd {
    std::vector<std::string> similar;    // at most three similar names that have candidates
    std::vector<std::string> unrecorded; // KEL files of that name that have no support record
    std::vector<std::string> unsearched; // files of that name in forgotten folders below the root
};

// Each of these files in words, escaped.
std::vector<std::string> linesOf(const DeadEnd& deadEnd);

// The same after the similar names, if there are any: what `explain` adds.
std::vector<std::string> notesOf(const DeadEnd& deadEnd);

// "did you mean a, b or c?"; empty when no name is similar.
std::string suggestionWords(const DeadEnd& deadEnd);

class DeadEnds {
public:
    // Lifetime: both outlive it.
    DeadEnds(const Request& request, const ResolverSession& resolver) : request_(request), resolver_(resolver) {}

    // What is found in time about a name without a candidate: for all names together there are about as many
    // milliseconds as KELWHICH_SUGGEST_MS says, from the first on. What cannot be read is left out.
    DeadEnd lookAt(const std::string& name);

    // What else nobody finds, and the command that goes on from a name: `hasLeftOut`: something was left out for it,
    // which is not shown yet. Empty for an absolute path.
    std::string nextSteps(const std::string& name, const DeadEnd& deadEnd, bool hasLeftOut);

private:
    using Clock = standalone::SpellingSuggestions::Clock;

    std::vector<std::string> similarTo(const std::string& name);
    [[nodiscard]] std::vector<std::string> unrecordedAs(const std::u16string& name) const;
    const std::vector<std::string>& unsearchedFolders();

    const Request& request_;
    const ResolverSession& resolver_;
    std::optional<Clock::time_point> deadline_;
    std::optional<standalone::SpellingSuggestions> suggestions_; // read when first needed
    std::optional<std::vector<std::string>> unsearched_;         // the same
};

} // namespace tessgen::cli
