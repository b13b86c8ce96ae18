#include "cli/Requirement.hpp"

#include "standalone/Text.hpp"

#include <fmt/format.h>

#include <stdexcept>

namespace tessgen::cli {

void addRequirements(Requirement& requirement, std::string_view words) {
    for (const auto& word : standalone::split(words, ',')) {
        if (word == "user") {
            requirement.user = true;
        } else if (word == "supported") {
            requirement.supported = true;
        } else if (word == "single") {
            requirement.single = true;
        } else {
            throw std::runtime_error(
                fmt::format("--require knows user, supported and single, not '{}'; see kelwhich --help", word));
        }
    }
}

} // namespace tessgen::cli
