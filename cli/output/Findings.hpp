// Renders findings: for people, and as JSON for programs.
#pragma once

#include "analysis/Finding.hpp"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace tessgen::cli {

nlohmann::ordered_json document(const analysis::Finding& finding);

// The key's name in JSON.
std::string_view keyName(kelwhich::Explanation::Key key);

} // namespace tessgen::cli
