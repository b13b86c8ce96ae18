// What an editor says about itself before anything else: what it can do, where it works, and its settings.
//
// Threads: plain values.
#pragma once

#include "cli/lsp/NamePattern.hpp"
#include "cli/lsp/Positions.hpp"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <sys/types.h>

namespace tessgen::cli {

struct Client {
    PositionEncoding encoding = PositionEncoding::utf16;
    bool prefersMarkdown = false; // in answers to hover
    bool showsProgress = false;
    bool showsRelated = false;             // the other file of a finding, too
    std::optional<pid_t> process;          // its own
    std::optional<std::string> rootFolder; // of the workspace, if it has one on this machine

    // Its settings.
    std::optional<std::string> manifest; // or the folder that holds it
    NamePattern pattern;
};

// From the parameters of the request initialize. What is missing or malformed is as if it were not said.
// Errors: RPCError for a setting that is no pattern.
Client readClient(const nlohmann::json& params);

} // namespace tessgen::cli
