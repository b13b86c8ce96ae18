#include "cli/lsp/JsonRpc.hpp"

#include "cli/output/Escape.hpp"
#include "standalone/json/JsonInput.hpp"

#include <fmt/format.h>

#include <cstdint>
#include <utility>

namespace tessgen::cli {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

json parsed(std::string_view body) {
    constexpr std::size_t mostValues = 1'000'000; // far more than an editor sends
    try {
        return standalone::parseJson(body, {mostValues});
    } catch (const standalone::JsonSyntaxError& error) {
        throw RPCError(RPCErrorCode::parseError,
                       fmt::format("line {}, column {}: {}", error.line, error.column, error.what()));
    }
}

ordered_json messageFor(const json* id) {
    ordered_json message{{"jsonrpc", "2.0"}};
    if (id != nullptr) {
        message["id"] = *id;
    }
    return message;
}

} // namespace

Message parseMessage(std::string_view body, json& id) {
    auto value = parsed(body);
    const auto refuse = [](const char* why) { throw RPCError(RPCErrorCode::invalidRequest, why); };
    if (!value.is_object()) {
        refuse("a message is an object");
    }
    Message message;
    if (const auto* const given = standalone::findValue(value, "id"); given != nullptr && !given->is_null()) {
        if (!given->is_string() && !given->is_number_integer()) {
            refuse("the id of a message is a number or a text");
        }
        message.id = id = *given;
    }
    if (const auto* const method = standalone::findValue(value, "method")) {
        if (!method->is_string() || method->get_ref<const std::string&>().empty()) {
            refuse("a method is a text");
        }
        message.method = method->get<std::string>();
    } else if (!value.contains("error") && (message.id.is_null() || !value.contains("result"))) {
        refuse("a message has a method, or is a response");
    }
    message.isError = value.contains("error");
    if (const auto params = value.find("params"); params != value.end()) {
        message.params = std::move(*params);
    }
    return message;
}

ordered_json resultResponse(const json& id, ordered_json result) {
    auto response = messageFor(&id);
    response["result"] = std::move(result);
    return response;
}

ordered_json errorResponse(const json& id, RPCErrorCode code, std::string_view message) {
    auto response = messageFor(&id);
    response["error"] = {{"code", static_cast<int>(code)}, {"message", escaped(message)}};
    return response;
}

ordered_json notification(std::string_view method, ordered_json params) {
    auto sent = messageFor(nullptr);
    sent["method"] = method;
    sent["params"] = std::move(params);
    return sent;
}

ordered_json shownMessage(MessageType type, std::string_view text) {
    return notification("window/showMessage", {{"type", static_cast<int>(type)}, {"message", escaped(text)}});
}

ordered_json loggedMessage(MessageType type, std::string_view text) {
    return notification("window/logMessage", {{"type", static_cast<int>(type)}, {"message", escaped(text)}});
}

ordered_json request(const json& id, std::string_view method, ordered_json params) {
    auto sent = messageFor(&id);
    sent["method"] = method;
    sent["params"] = std::move(params);
    return sent;
}

const json& valueAt(const json& object, std::string_view key) {
    const auto* const value = object.is_object() ? standalone::findValue(object, key) : nullptr;
    if (value == nullptr) {
        throw RPCError(RPCErrorCode::invalidParams, fmt::format("\"{}\" is missing", key));
    }
    return *value;
}

const std::string& textAt(const json& object, std::string_view key) {
    const auto& value = valueAt(object, key);
    if (!value.is_string()) {
        throw RPCError(RPCErrorCode::invalidParams, fmt::format("\"{}\" is not a text", key));
    }
    return value.get_ref<const std::string&>();
}

std::size_t countAt(const json& object, std::string_view key) {
    const auto& value = valueAt(object, key);
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > UINT32_MAX) {
        throw RPCError(RPCErrorCode::invalidParams, fmt::format("\"{}\" is not a count", key));
    }
    return value.get<std::size_t>();
}

const json* findAt(const json& value, std::initializer_list<std::string_view> keys) {
    const auto* found = &value;
    for (const auto key : keys) {
        found = found->is_object() ? standalone::findValue(*found, key) : nullptr;
        if (found == nullptr) {
            return nullptr;
        }
    }
    return found;
}

} // namespace tessgen::cli
