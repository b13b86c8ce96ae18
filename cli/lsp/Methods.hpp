// What an editor asks about names: one function a method of the Language Server Protocol.
//
// Threads: one.
#pragma once

#include "cli/installation/ResolverSession.hpp"
#include "cli/lsp/Documents.hpp"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

// A request, and what it is answered from.
struct Asked {
    const nlohmann::json& params;
    const Documents& documents;
    const Request& request; // the one of the command line
    ResolverSession& resolver;
    std::optional<std::vector<std::string>>& names; // every name of the installation; none until it is needed
    bool prefersMarkdown;                           // in answers to hover
};

// Errors: RPCError for malformed parameters; those of the resolver.
using Method = nlohmann::ordered_json (*)(const Asked& asked);

// Null when there is no such method.
Method findMethod(std::string_view name);

inline constexpr std::string_view explainCommandName = "kelwhich.explain";

} // namespace tessgen::cli
