// Where the host keeps its own code.
#pragma once

#include <string>
#include <vector>

namespace tessapp::util::foundation {

// The host's source-code folders, each as the components of its path below the installation root.
// Lifetime: the list stays valid and unchanged while a caller reads it.
const std::vector<std::vector<std::u16string>>& getORVAKSourceCodeDirs();

} // namespace tessapp::util::foundation
