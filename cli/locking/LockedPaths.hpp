// Files as locks name them, so that two checkouts of a tree, and two releases of a host, have the same lock: relative
// to the deepest of three folders that the file lies in, else absolute.
//   in the manifest's folder:        mine/wave.vk, or ./<x>/wave.vk when that begins with "<"
//   in the installation root:        <root>/kel/wave.vk
//   in the root of support packages: <packages>/kel/wave.vk
//
// Threads: any.
#pragma once

#include "standalone/services/SessionState.hpp"

#include <string>
#include <vector>

namespace tessgen::cli {

class LockedPaths {
public:
    explicit LockedPaths(const standalone::SessionState& session);

    // Lexical. `whole` is the reverse; a path below a folder that this installation does not have stays as it is.
    [[nodiscard]] std::u16string shortened(const std::u16string& path) const;
    [[nodiscard]] std::u16string whole(const std::u16string& path) const;

private:
    struct Base {
        std::u16string folder; // with a "/" at its end
        std::u16string word;   // in its place; empty for the manifest's folder
    };
    std::vector<Base> bases_; // the deepest first
};

} // namespace tessgen::cli
