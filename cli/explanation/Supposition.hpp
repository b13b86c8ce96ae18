// What a name would resolve to if one more file, or one more record, led to a candidate.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"
#include "tessgen/kelwhich/MetadataResolver.hpp"

#include <cstddef>
#include <memory>
#include <string>

namespace tessgen::cli {

// The explanation of `name`, as if the host answered `path` for `symbol` too, after `place` other definitions.
// Errors: those of the collaborators, here and below.
kelwhich::Explanation supposeFound(const std::u16string& name, const std::u16string& symbol, const std::u16string& path,
                                   std::size_t place);

// The explanation of `name`, as if `record` were the last record found under `symbol`.
kelwhich::Explanation supposeRecord(const std::u16string& name, const std::u16string& symbol,
                                    std::shared_ptr<const kelwhich::SupportEntry> record);

} // namespace tessgen::cli
