#include "cli/output/Json.hpp"

#include "cli/output/Escape.hpp"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace tessgen::cli {

namespace {

constexpr int onOneLine = -1;

std::string print(const nlohmann::ordered_json& value, int indent) {
    return escapedJSON(value.dump(indent));
}

} // namespace

std::string printJSON(const nlohmann::ordered_json& value) {
    return print(value, onOneLine);
}

std::string printJSONDocument(const nlohmann::ordered_json& value) {
    return print(value, 2) + '\n';
}

std::string printJSONString(std::string_view text) {
    return print(forJSON(text), onOneLine);
}

} // namespace tessgen::cli
