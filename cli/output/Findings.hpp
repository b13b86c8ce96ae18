// Renders findings as JSON.
#pragma once

#include "analysis/Finding.hpp"
#include "analysis/Names.hpp"

#include <nlohmann/json_fwd.hpp>

namespace tessgen::cli {

using analysis::keyName;

nlohmann::ordered_json document(const analysis::Finding& finding);

} // namespace tessgen::cli
