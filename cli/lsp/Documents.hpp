// The documents that an editor has open, as the editor has them.
//
// Threads: one.
#pragma once

#include "cli/lsp/NamePattern.hpp"
#include "cli/lsp/Positions.hpp"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace tessgen::cli {

struct Document {
    std::string text; // UTF-8
    std::int64_t version = 0;
    std::optional<std::string> path; // absolute, of any bytes; none unless it is a file of this machine
    bool isNew = false;              // nothing was there when it was opened, and it was not saved since
};

// A name in a document, or the beginning of one, and its place.
struct PlacedName {
    std::string text;
    Position begin;
    Position end;
};

class Documents {
public:
    // How the editor counts, and what is a name.
    PositionEncoding encoding = PositionEncoding::utf16;
    NamePattern pattern;

    // Each takes the parameters of the notification of that name.
    // Errors: RPCError for malformed parameters and unknown documents. Changes before the malformed one stay.
    void didOpen(const nlohmann::json& params);
    void didChange(const nlohmann::json& params);
    void didSave(const nlohmann::json& params);
    void didClose(const nlohmann::json& params);

    // By the URIs that the editor gave.
    [[nodiscard]] const std::map<std::string, Document>& all() const { return documents_; }

    // The paths of those that are new: absolute, without "." and "..".
    [[nodiscard]] std::set<std::string> unsavedFiles() const;

    // Of the document and position in the parameters; `beginningAt`: what of a name stands before the position.
    // Errors: RPCError for malformed parameters and unknown documents.
    [[nodiscard]] std::optional<PlacedName> nameAt(const nlohmann::json& params) const;
    [[nodiscard]] PlacedName beginningAt(const nlohmann::json& params) const;

private:
    // `known` is a line of the text before the change, and becomes one of the text after it.
    void change(std::string& text, const nlohmann::json& change, LineBegin& known) const;
    [[nodiscard]] PlacedName placed(const std::string& text, std::size_t line, const TextRange& range) const;

    std::map<std::string, Document> documents_;
};

} // namespace tessgen::cli
