// What is told of a file of entries that was looked through.
#pragma once

#include "standalone/DatabaseCheck.hpp"

#include <string>
#include <string_view>

namespace tessgen::cli {

// Writes that the file is whole and how many records it holds, which `record` names; or its damages, with what to do.
// Returns exitYes or exitNothing.
int tellVerified(const std::string& file, const standalone::DatabaseCheck& check, const standalone::DatabaseKind& kind,
                 std::string_view record);

} // namespace tessgen::cli
