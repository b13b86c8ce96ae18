#include "cli/options/NextCommand.hpp"

#include "cli/output/Escape.hpp"

#include <fmt/format.h>

#include <algorithm>

namespace tessgen::cli {

std::string thisProgram(const Request& request) {
    return request.installation ? "kelwhich -i " + shellWord(*request.installation) : "kelwhich";
}

std::string nameWord(const std::string& name) {
    const bool isOther =
        name.starts_with('-')
        || std::any_of(commandTable.begin(), commandTable.end(), [&name](const auto& row) { return row.word == name; });
    return name.empty() ? "NAME" : (isOther ? "-- " : "") + shellWord(name);
}

std::string explainCommand(const Request& request, std::string_view options, const std::string& name) {
    return fmt::format("{} explain {}{}{}", thisProgram(request), options, name.starts_with('-') ? "-- " : "",
                       shellWord(name));
}

} // namespace tessgen::cli
