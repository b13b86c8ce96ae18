#include "cli/checking/Uses.hpp"

#include "cli/explanation/GivenPath.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/files/LineReader.hpp"

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <tuple>

namespace tessgen::cli {

namespace {

using standalone::LineReader;

// Takes ":NUMBER" off the end of `text`; nothing when that is not there.
std::optional<std::size_t> takeNumber(std::string_view& text) {
    const auto colon = text.rfind(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data() + colon + 1, text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number == 0) {
        return std::nullopt;
    }
    text = text.substr(0, colon);
    return number;
}

UsePlace readPlace(std::string_view text) {
    const auto column = takeNumber(text);
    const auto line = column ? takeNumber(text) : std::nullopt;
    if (!line || text.empty()) {
        throw std::runtime_error("before the TAB there is no FILE:LINE:COLUMN");
    }
    return {inUTF8(absolute(std::string(text))), *line, *column};
}

Use readUse(std::string_view line) {
    const auto tab = line.rfind('\t');
    return tab == std::string_view::npos ? Use{parseName(line), {}}
                                         : Use{parseName(line.substr(tab + 1)), readPlace(line.substr(0, tab))};
}

// "FILE:NUMBER"
std::string placeOf(const LineReader& lines) {
    auto place = lines.place();
    place.pop_back(); // ":"
    return place;
}

bool isBefore(const Use& a, const Use& b) {
    return std::tie(a.place.file, a.place.line, a.place.column, a.name)
           < std::tie(b.place.file, b.place.line, b.place.column, b.name);
}

} // namespace

Uses readUses(const std::string& file, char end) {
    auto lines = LineReader::ofInput(file, end);
    Uses uses;
    standalone::forEachLine(
        lines, [&](std::string_view line) { uses.all.push_back(readUse(line)); },
        [&](const char* reason) {
            uses.skipped.push_back({placeOf(lines), reason});
        });
    std::sort(uses.all.begin(), uses.all.end(), isBefore);
    const auto isSame = [](const Use& a, const Use& b) { return !isBefore(a, b); }; // sorted
    uses.all.erase(std::unique(uses.all.begin(), uses.all.end(), isSame), uses.all.end());
    return uses;
}

} // namespace tessgen::cli
