#include "cli/Reason.hpp"

#include "standalone/FileTree.hpp"

#include <fmt/format.h>

#include <filesystem>

namespace tessgen::cli {

std::string reasonOf(const std::exception& error) {
    if (const auto* const unknown = dynamic_cast<const std::filesystem::filesystem_error*>(&error)) {
        return fmt::format("{}: cannot be looked for: {}{}", standalone::shownPath(unknown->path1().string()),
                           unknown->code().message(), standalone::adviceOn(unknown->code().value()));
    }
    return error.what();
}

} // namespace tessgen::cli
