#include "cli/options/Help.hpp"
#include "cli/pages/Pages.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>

namespace tessgen::cli {

namespace {

// A line of text escaped for roff. "-" stays a hyphen-minus, so that it can be copied.
std::string roff(std::string_view text) {
    std::string out(text.starts_with('.') || text.starts_with('\'') ? "\\&" : "");
    for (const char c : text) {
        out += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
    }
    return out;
}

std::string upperCase(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return out;
}

// The letter and the name in bold, the argument in italics.
std::string optionPage(const OptionRow& row) {
    const auto letter = row.letter == 0 ? "" : fmt::format(R"(\fB\-{}\fR, )", row.letter);
    const auto argument = row.argument == nullptr ? "" : fmt::format(" \\fI{}\\fR", roff(row.argument));
    return fmt::format(".TP\n{}\\fB\\-\\-{}\\fR{}\n{}\n", letter, roff(row.name), argument, roff(sentence(row.help)));
}

std::string commandPage(const CommandRow& command) {
    auto page = fmt::format(".SS \"kelwhich {}\"\n{}\n", roff(spelled(command)), roff(sentence(command.help)));
    for (const auto& row : optionTable) {
        if (row.belongsTo(command) && !row.belongsToAll()) {
            page += optionPage(row);
        }
    }
    return page;
}

} // namespace

std::string manPage() {
    auto page = fmt::format(".TH KELWHICH 1 \"\" \"kelwhich " KELWHICH_VERSION "\" \"User Commands\"\n"
                            ".SH NAME\n"
                            "kelwhich \\- print which definitions a name may stand for in generated code\n"
                            ".SH SYNOPSIS\n"
                            ".B kelwhich\n[\\fIOPTION\\fR...] \\fINAME\\fR...\n.br\n"
                            ".B kelwhich\n\\fICOMMAND\\fR [\\fIOPTION\\fR...] ...\n"
                            ".SH DESCRIPTION\n{}\n"
                            ".SH COMMANDS\n",
                            roff(purpose));
    for (const auto& row : commandTable) {
        page += commandPage(row);
    }
    page += ".SH OPTIONS OF EVERY COMMAND\n";
    for (const auto& row : optionTable) {
        page += row.belongsToAll() ? optionPage(row) : "";
    }
    for (const auto& section : helpSections) {
        page += fmt::format(".SH {}\n", upperCase(section.title));
        for (const auto& line : standalone::split(section.text, '\n')) {
            page += fmt::format("{}{}\n", page.ends_with(upperCase(section.title) + "\n") ? "" : ".br\n", roff(line));
        }
    }
    return page;
}

} // namespace tessgen::cli
