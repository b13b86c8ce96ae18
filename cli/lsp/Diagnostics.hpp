// What `check` finds about the definitions that open documents are, published as diagnostics.
//
// Threads: one.
#pragma once

#include "cli/installation/ResolverSession.hpp"
#include "cli/lsp/Documents.hpp"

#include <nlohmann/json.hpp>

#include <functional>
#include <map>
#include <string>

namespace tessgen::cli {

class Diagnostics {
public:
    using Publish = std::function<void(nlohmann::ordered_json params)>;

    // `publish` sends the parameters of a notification textDocument/publishDiagnostics.
    explicit Diagnostics(Publish publish) : publish_(std::move(publish)) {}

    bool showsRelated = false; // the other file of a finding, too

    // Checks the documents anew, or only those that were not checked yet, and publishes what is not published yet.
    void update(const Documents& documents, ResolverSession& resolver, bool onlyNew);

private:
    // NOLINTNEXTLINE(bugprone-exception-escape): moving JSON throws nothing
    struct Checked {
        nlohmann::ordered_json found; // the diagnostics, without their range
        std::string published;        // the last parameters as text; empty when there are none
    };

    [[nodiscard]] nlohmann::ordered_json check(const Document& document, ResolverSession& resolver) const;

    Publish publish_;
    std::map<std::string, Checked> checked_; // by the URIs of the documents
};

} // namespace tessgen::cli
