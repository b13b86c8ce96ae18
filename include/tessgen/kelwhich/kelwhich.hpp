// Resolves one name over the running host.
#pragma once

#include "tessgen/kelwhich/WhichResult.hpp"
#include "tessgen/kelwhich/export.hpp"

#include <string>
#include <vector>

namespace tessgen::kelwhich {

// The definitions that `name` may stand for, the preferred one first, as KELWhichResolver::resolve returns them over
// the host's own services. Nothing is kept between calls: each call sees the current host and disk.
// Threads: any thread that has an engine of the host.
// Errors: the host's, the metadata service's and the file system's own, unchanged.
[[nodiscard]] KELWHICH_EXPORT std::vector<WhichResult> kelwhich(const std::u16string& name);

} // namespace tessgen::kelwhich
