#include "cli/lsp/Documents.hpp"

#include "cli/lsp/JsonRpc.hpp"
#include "cli/output/FileURI.hpp"
#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <cerrno>
#include <unistd.h>
#include <utility>

namespace tessgen::cli {

namespace {

using nlohmann::json;

const json& identifierIn(const json& params) {
    return valueAt(params, "textDocument");
}

std::int64_t versionIn(const json& identifier) {
    const auto* const version = findAt(identifier, {"version"});
    return version != nullptr && version->is_number_integer() ? version->get<std::int64_t>() : 0;
}

[[noreturn]] void refuseUnknown(const std::string& uri) {
    throw RPCError(RPCErrorCode::invalidParams, uri + ": the document is not open");
}

// The document of these parameters.
template <typename All>
auto& findIn(All& documents, const json& params) {
    const auto& uri = textAt(identifierIn(params), "uri");
    const auto found = documents.find(uri);
    if (found == documents.end()) {
        refuseUnknown(uri);
    }
    return found->second;
}

bool isAbsent(const std::optional<std::string>& path) {
    return path && access(path->c_str(), F_OK) != 0 && errno == ENOENT;
}

Position readPosition(const json& position) {
    return {countAt(position, "line"), countAt(position, "character")};
}

} // namespace

void Documents::didOpen(const json& params) {
    const auto& identifier = identifierIn(params);
    const auto& uri = textAt(identifier, "uri");
    auto path = pathOfURI(uri);
    const bool isNew = isAbsent(path);
    documents_[uri] = {textAt(identifier, "text"), versionIn(identifier), std::move(path), isNew};
}

std::set<std::string> Documents::unsavedFiles() const {
    std::set<std::string> files;
    for (const auto& [uri, document] : documents_) {
        if (document.isNew) {
            files.insert(standalone::absolutePath(*document.path, "/"));
        }
    }
    return files;
}

void Documents::didChange(const json& params) {
    auto& document = findIn(documents_, params);
    const auto& changes = valueAt(params, "contentChanges");
    if (!changes.is_array()) {
        throw RPCError(RPCErrorCode::invalidParams, "\"contentChanges\" is not a list");
    }
    LineBegin known; // one may replace thousands of words in a large document at once
    for (const auto& entry : changes) {
        change(document.text, entry, known);
    }
    document.version = versionIn(identifierIn(params));
}

void Documents::change(std::string& text, const json& change, LineBegin& known) const {
    const auto& replacement = textAt(change, "text");
    const auto* const range = findAt(change, {"range"});
    if (range == nullptr || range->is_null()) {
        text = replacement;
        known = {};
        return;
    }
    auto begin = offsetOf(text, readPosition(valueAt(*range, "start")), encoding, known);
    auto other = known;
    auto end = offsetOf(text, readPosition(valueAt(*range, "end")), encoding, other);
    if (end < begin) {
        std::swap(begin, end);
        known = other;
    }
    text.replace(begin, end - begin, replacement);
    if (known.offset > 0 && text.compare(known.offset - 1, 2, "\r\n") == 0) { // no line begins between the two
        known = {};
    }
}

void Documents::didSave(const json& params) {
    auto& document = findIn(documents_, params);
    document.isNew = isAbsent(document.path);
}

void Documents::didClose(const json& params) {
    const auto& uri = textAt(identifierIn(params), "uri");
    if (documents_.erase(uri) == 0) {
        refuseUnknown(uri);
    }
}

std::optional<PlacedName> Documents::nameAt(const json& params) const {
    const auto& text = findIn(documents_, params).text;
    const auto offset = offsetOf(text, readPosition(valueAt(params, "position")), encoding);
    const auto line = beginOfLine(text, offset);
    const auto name = pattern.find(std::string_view(text).substr(line, endOfLine(text, offset) - line), offset - line);
    return name ? std::optional(placed(text, line, *name)) : std::nullopt;
}

PlacedName Documents::beginningAt(const json& params) const {
    const auto& text = findIn(documents_, params).text;
    const auto offset = offsetOf(text, readPosition(valueAt(params, "position")), encoding);
    const auto line = beginOfLine(text, offset);
    return placed(text, line, pattern.findBeginning(std::string_view(text).substr(line), offset - line));
}

PlacedName Documents::placed(const std::string& text, std::size_t line, const TextRange& range) const {
    auto name = text.substr(line + range.begin, range.end - range.begin);
    const auto begin = positionOf(text, line + range.begin, encoding);
    const Position end{begin.line, begin.character + positionOf(name, name.size(), encoding).character};
    return {std::move(name), begin, end};
}

} // namespace tessgen::cli
