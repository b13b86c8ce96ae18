// What `check` finds about the definitions that open documents are, published as diagnostics.
//
// Threads: one.
#pragma once

#include "cli/installation/ResolverSession.hpp"
#include "cli/lsp/Documents.hpp"
#include "cli/lsp/JsonRpc.hpp"

#include <nlohmann/json.hpp>

#include <map>
#include <string>

namespace tessgen::cli {

class Diagnostics {
public:
    explicit Diagnostics(Send send) : send_(std::move(send)) {}

    bool showsRelated = false; // the other file of a finding, too

    // Publishes that nothing is found about documents which are not open any more.
    void clearClosed(const Documents& documents);

    // Checks the documents anew, or only those that were not checked yet, and publishes what is not published yet.
    void update(const Documents& documents, ResolverSession& resolver, bool onlyNew);

private:
    // NOLINTNEXTLINE(bugprone-exception-escape): moving JSON throws nothing
    struct Checked {
        nlohmann::ordered_json found; // the diagnostics, without their range
        std::string published;        // the last parameters as text; empty when there are none
    };

    [[nodiscard]] nlohmann::ordered_json check(const Document& document, ResolverSession& resolver) const;
    void publish(nlohmann::ordered_json params);

    const Send send_;
    std::map<std::string, Checked> checked_; // by the URIs of the documents
};

} // namespace tessgen::cli
