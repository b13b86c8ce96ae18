// The folders that the code generator keeps its own files in.
#pragma once

#include <string>
#include <vector>

namespace tessgen::datalists {

// The KEL path folders, each a complete path that is compared as it stands: no trailing "/".
// Lifetime: the list outlives every resolver.
const std::vector<std::u16string>& kelPathFolders();

} // namespace tessgen::datalists
