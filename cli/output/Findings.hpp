// Renders findings: for people, and as JSON for programs.
#pragma once

#include "analysis/Finding.hpp"
#include "analysis/Names.hpp"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace tessgen::cli {

using analysis::keyName;

nlohmann::ordered_json document(const analysis::Finding& finding);

} // namespace tessgen::cli
