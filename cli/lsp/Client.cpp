#include "cli/lsp/Client.hpp"

#include "cli/lsp/JsonRpc.hpp"
#include "cli/output/FileURI.hpp"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string_view>

namespace tessgen::cli {

namespace {

using nlohmann::json;
using Texts = std::initializer_list<std::string_view>;

bool isTrueAt(const json& params, Texts keys) {
    const auto* const value = findAt(params, keys);
    return value != nullptr && value->is_boolean() && value->get<bool>();
}

// The text at the end of a path of keys, unless it is empty.
std::optional<std::string> textFrom(const json& params, Texts keys) {
    const auto* const value = findAt(params, keys);
    const bool isText = value != nullptr && value->is_string() && !value->get_ref<const std::string&>().empty();
    return isText ? std::optional(value->get<std::string>()) : std::nullopt;
}

// The first in a list of texts that is one of these; empty when none is.
std::string_view firstOf(Texts known, const json& params, Texts keys) {
    const auto* const list = findAt(params, keys);
    if (list == nullptr || !list->is_array()) {
        return {};
    }
    const auto found = std::find_first_of(list->begin(), list->end(), known.begin(), known.end());
    return found == list->end() ? std::string_view() : found->get_ref<const std::string&>();
}

std::optional<std::string> rootFolderIn(const json& params) {
    auto uri = textFrom(params, {"rootUri"});
    const auto* const folders = findAt(params, {"workspaceFolders"});
    if (folders != nullptr && folders->is_array() && !folders->empty()) {
        uri = textFrom(folders->front(), {"uri"});
    }
    return uri ? pathOfURI(*uri) : textFrom(params, {"rootPath"});
}

std::optional<pid_t> processIn(const json& params) {
    const auto* const id = findAt(params, {"processId"});
    const bool isId = id != nullptr && id->is_number_unsigned() && id->get<std::uint64_t>() <= INT32_MAX;
    return isId ? std::optional(id->get<pid_t>()) : std::nullopt;
}

NamePattern patternIn(const json& params) {
    const auto text = textFrom(params, {"initializationOptions", "namePattern"});
    try {
        return text ? NamePattern(*text) : NamePattern();
    } catch (const std::runtime_error& error) {
        throw RPCError(RPCErrorCode::invalidParams, error.what());
    }
}

} // namespace

Client readClient(const json& params) {
    Client client;
    if (!firstOf({"utf-8"}, params, {"capabilities", "general", "positionEncodings"}).empty()) {
        client.encoding = PositionEncoding::utf8;
    }
    const auto format =
        firstOf({"markdown", "plaintext"}, params, {"capabilities", "textDocument", "hover", "contentFormat"});
    client.prefersMarkdown = format == "markdown";
    client.showsProgress = isTrueAt(params, {"capabilities", "window", "workDoneProgress"});
    client.showsRelated =
        isTrueAt(params, {"capabilities", "textDocument", "publishDiagnostics", "relatedInformation"});
    client.process = processIn(params);
    client.rootFolder = rootFolderIn(params);
    client.manifest = textFrom(params, {"initializationOptions", "manifest"});
    client.pattern = patternIn(params);
    return client;
}

} // namespace tessgen::cli
