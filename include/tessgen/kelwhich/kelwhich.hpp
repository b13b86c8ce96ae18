// One question, answered from the running host.
#pragma once

#include "tessgen/kelwhich/WhichResult.hpp"
#include "tessgen/kelwhich/export.hpp"

#include <string>
#include <vector>

namespace tessgen::kelwhich {

// The definitions that `name` may stand for, the preferred one first, as KELWhichResolver::resolve gives them over
// the host's own services. Nothing is kept between calls: each sees the host and the disk as they are.
// Threads: any thread that has an engine of the host.
// Errors: the host's, the metadata service's and the file system's own, unchanged.
KELWHICH_EXPORT std::vector<WhichResult> kelwhich(const std::u16string& name);

} // namespace tessgen::kelwhich
