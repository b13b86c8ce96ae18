#include "cli/Verified.hpp"

#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Escape.hpp"

#include <fmt/format.h>

namespace tessgen::cli {

int tellVerified(const std::string& file, const standalone::DatabaseCheck& check, const standalone::DatabaseKind& kind,
                 std::string_view record) {
    if (check.damages == 0) {
        writeOut(fmt::format("{}: whole, {}\n", escaped(file), counted(check.records, record)));
        return exitYes;
    }
    std::string text;
    for (const auto& finding : check.findings) {
        text += fmt::format("{}: {}\n", escaped(file), finding);
    }
    writeOut(text);
    complain(
        fmt::format("{}: damaged in {}; build it anew with: {}", file, counted(check.damages, "place"), kind.command));
    return exitNothing;
}

} // namespace tessgen::cli
