#include "cli/reports/Markup.hpp"

#include "cli/output/Escape.hpp"

#include <fmt/format.h>
#include <utf8.h>

namespace tessgen::cli {

namespace {

// Line ends and tabs are syntax, since attributes lose them.
bool isMarkup(char first, std::string_view plain) {
    return std::string_view("&<>\"'\t\n\r").find(first) != std::string_view::npos
           && plain.find(first) == std::string_view::npos;
}

} // namespace

std::string inXML(std::string_view text, std::string_view plain) {
    std::string out;
    out.reserve(text.size());
    const auto* const end = text.data() + text.size();
    for (const auto* at = text.data(); at != end;) {
        const auto* const begin = at;
        const auto character = utf8::unchecked::next(at);
        const bool isRefused = character < U' ' || character == 0xFFFE || character == 0xFFFF;
        if (isMarkup(*begin, plain)) {
            out += fmt::format("&#{};", static_cast<unsigned>(character));
        } else if (isRefused && plain.find(*begin) == std::string_view::npos) {
            out += fmt::format("\\u{{{:X}}}", static_cast<unsigned>(character));
        } else {
            out.append(begin, at);
        }
    }
    return out;
}

std::string visibleInXML(std::string_view text) {
    return inXML(escaped(text));
}

} // namespace tessgen::cli
