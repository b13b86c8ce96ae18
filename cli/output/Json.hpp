// JSON as the program prints it. The library's printer is compiled in Json.cpp alone: it is half the compile time of a
// source that uses it.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace tessgen::cli {

// `value` printed on one line, without a line end. Characters that a person could not see are written as \uXXXX.
// Errors: those of nlohmann::json for text that is not UTF-8.
std::string printJSON(const nlohmann::ordered_json& value);

// `value` printed as a document: indented by two, with a line end.
std::string printJSONDocument(const nlohmann::ordered_json& value);

// `text` as a JSON string in quotes; escaped as for a terminal when it is not UTF-8.
std::string printJSONString(std::string_view text);

} // namespace tessgen::cli
