// Where the host is installed, and how it joins paths.
#pragma once

#include <string>

namespace fl::filesystem {

// The absolute path of the installation's root folder. It does not change while a resolver lives.
std::u16string get_install_path();

namespace detail {

// Appends one component to `base`, with a "/" between them unless `base` is empty or ends in one.
// The library calls it with the flag false.
void concatenate_pathname(std::u16string& base, const std::u16string& component, bool flag);

} // namespace detail
} // namespace fl::filesystem
