// Asks the resolver about definitions and uses, and gathers what is found about them.
#pragma once

#include "cli/checking/SourceFiles.hpp"
#include "cli/checking/Uses.hpp"
#include "cli/explanation/ReportedNames.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/reports/Report.hpp"
#include "standalone/services/SessionState.hpp"

#include <cstddef>
#include <vector>

namespace tessgen::cli {

struct Checked {
    std::vector<ReportEntry> entries; // of the definitions by their paths, then of the uses by their places
    std::size_t definitions = 0;      // that were checked
    std::size_t uses = 0;
    std::vector<Skipped> skipped; // definitions and names for which the resolver failed, sorted
};

// What the rules find about each definition, under its own name, and about each use. Asks for each name about once:
// first for those that the definitions define and for those that are used; then, if these do not lead to every
// definition, for others that may. `names`, unless it is null, gets those that definitions and uses were judged under.
// Many names want a session with a snapshot. Errors: std::runtime_error for a damaged store.
Checked checkAll(const std::vector<std::u16string>& definitions, const std::vector<Use>& uses,
                 const standalone::SessionState& session, ResolverSession& resolver, ReportedNames* names);

} // namespace tessgen::cli
