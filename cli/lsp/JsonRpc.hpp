// The messages of JSON-RPC 2.0 that an editor and a server exchange.
//
// Threads: plain values.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tessgen::cli {

// Codes of errors, by JSON-RPC and by the Language Server Protocol.
enum class RPCErrorCode {
    parseError = -32700,
    invalidRequest = -32600,
    methodNotFound = -32601,
    invalidParams = -32602,
    notInitialized = -32002,
    requestCancelled = -32800,
    requestFailed = -32803,
};

// Why a request is answered by an error.
class RPCError : public std::runtime_error {
public:
    RPCError(RPCErrorCode why, const std::string& message) : std::runtime_error(message), code(why) {}

    RPCErrorCode code;
};

// NOLINTNEXTLINE(bugprone-exception-escape): moving JSON throws nothing
struct Message {
    // Of a request or a response: a number or a text. Null for a notification, and when an error answers what could
    // not be read.
    nlohmann::json id = nullptr;
    std::string method; // empty for a response
    nlohmann::json params = nullptr;
    bool isError = false; // it is the response of an error

    [[nodiscard]] bool isRequest() const { return !method.empty() && !id.is_null(); }
};

// Errors: RPCError for a text that is not JSON or is no message. `id` then becomes that of the request, if it has one.
Message parseMessage(std::string_view body, nlohmann::json& id);

using Send = std::function<void(const nlohmann::ordered_json& message)>;

// Messages of the server. The texts of errors and notes may be any bytes, and are escaped.
nlohmann::ordered_json resultResponse(const nlohmann::json& id, nlohmann::ordered_json result);
nlohmann::ordered_json errorResponse(const nlohmann::json& id, RPCErrorCode code, std::string_view message);
enum class MessageType { error = 1, info = 3 };
nlohmann::ordered_json shownMessage(MessageType type, std::string_view text);
nlohmann::ordered_json loggedMessage(MessageType type, std::string_view text);
nlohmann::ordered_json notification(std::string_view method, nlohmann::ordered_json params);
nlohmann::ordered_json request(const nlohmann::json& id, std::string_view method, nlohmann::ordered_json params);

// Reads the parameters of a message: the value at a key of an object.
// Errors: RPCError (invalidParams) that names the key, for one that is missing or of another type.
const nlohmann::json& valueAt(const nlohmann::json& object, std::string_view key);
const std::string& textAt(const nlohmann::json& object, std::string_view key);
std::size_t countAt(const nlohmann::json& object, std::string_view key);

// The value at the end of a path of keys; null when there is none.
const nlohmann::json* findAt(const nlohmann::json& value, std::initializer_list<std::string_view> keys);

} // namespace tessgen::cli
