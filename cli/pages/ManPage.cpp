#include "cli/options/CommandDetails.hpp"
#include "cli/options/Help.hpp"
#include "cli/pages/Pages.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <span>
#include <string>
#include <string_view>

namespace tessgen::cli {

namespace {

constexpr auto variables = std::to_array<Term>({
    {"KELWHICH_INSTALLATION", "the manifest, or the folder that holds it, where --installation does not name one"},
    {"KELWHICH_SUGGEST_MS", "how long to look for similar names, in milliseconds; 50 by default, 0 for never"},
    {"KELWHICH_PROGRESS_MS", "how long work takes before it shows its progress, in milliseconds; 500 by default"},
    {"NO_COLOR", "if not empty, no colours; --color beats it"},
    {"FORCE_COLOR", "if neither empty nor 0, colours also where there is no terminal; NO_COLOR and --color beat it"},
    {"TERM", "if empty or dumb, a terminal gets no colours and no progress"},
});

constexpr auto files = std::to_array<Term>({
    {"installation.json", "the manifest, in the working folder or above; the other files are where it says"},
    {"support.jsonl", "the support records, from which store build makes the store"},
    {".kelwhich-new-NUMBER", "a file that is being built; after a killed build, the next one removes it"},
    {"share/kelwhich/*.schema.json", "the schemas of the manifest and of what --json prints, below the prefix"},
    {"share/doc/kelwhich", "the documents, below the prefix; begin with README.md"},
});

// A line of text escaped for roff. "-" and "'" stay as they are, so that they can be copied. A line may break after a
// comma, since JSON has no spaces.
std::string roff(std::string_view text) {
    std::string out(text.starts_with('.') ? "\\&" : "");
    for (const char c : text) {
        out += c == '\\' ? "\\e" : c == '-' ? "\\-" : c == '\'' ? "\\(aq" : c == ',' ? ",\\:" : std::string(1, c);
    }
    return out;
}

std::string upperCase(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return out;
}

std::string termPage(std::string_view word, std::string_view meaning) {
    return fmt::format(".TP\n\\fB{}\\fR\n{}\n", roff(word), roff(sentence(meaning)));
}

// The letter and the name in bold, the argument in italics.
std::string optionPage(const OptionRow& row, std::string_view help) {
    const auto letter = row.letter == 0 ? "" : fmt::format(R"(\fB\-{}\fR, )", row.letter);
    const auto argument = row.argument == nullptr ? "" : fmt::format(" \\fI{}\\fR", roff(row.argument));
    return fmt::format(".TP\n{}\\fB\\-\\-{}\\fR{}\n{}\n", letter, roff(row.name), argument, roff(sentence(help)));
}

// Whether the option is explained once for all commands, since more than two have it.
bool isShared(const OptionRow& row) {
    return std::count_if(commandTable.begin(), commandTable.end(), [&](const auto& c) { return row.belongsTo(c); }) > 2;
}

std::string commandPage(const CommandRow& command) {
    auto page = fmt::format(".SS \"kelwhich {}\"\n{}\n", roff(spelled(command)), roff(sentence(command.help)));
    std::string shared;
    for (const auto& row : optionTable) {
        const auto help = helpOf(row, command);
        if (row.belongsTo(command) && (!isShared(row) || help != row.help)) {
            page += optionPage(row, help);
        } else if (row.belongsTo(command) && !row.belongsToAll()) {
            shared += fmt::format(R"({}\fB\-\-{}\fR)", shared.empty() ? "" : ", ", roff(row.name));
        }
    }
    page += shared.empty() ? "" : fmt::format(".PP\nAlso takes {}: see OPTIONS.\n", shared);
    if (const auto* const details = findDetails(command); details != nullptr && !details->columns.empty()) {
        page += ".PP\nIt prints:\n";
        for (const auto& column : details->columns) {
            page += termPage(column.word, column.meaning);
        }
    }
    return page;
}

// "0  every name has a candidate" becomes a term, any other line a paragraph.
std::string linePage(std::string_view line) {
    const auto gap = line.find("  ");
    return gap == std::string_view::npos ? fmt::format(".PP\n{}\n", roff(line))
                                         : termPage(line.substr(0, gap), line.substr(gap + 2));
}

std::string termsPage(std::string_view title, std::span<const Term> terms) {
    auto page = fmt::format(".SH {}\n", title);
    for (const auto& term : terms) {
        page += termPage(term.word, term.meaning);
    }
    return page;
}

std::string examplesPage() {
    std::string page = ".SH EXAMPLES\n";
    for (const auto& command : commandTable) {
        if (const auto* const details = findDetails(command)) {
            for (const auto& example : details->examples) {
                page += termPage(example.command, example.purpose);
            }
        }
    }
    return page;
}

} // namespace

std::string manPage() {
    auto page = fmt::format(".TH KELWHICH 1 \"\" \"kelwhich " KELWHICH_VERSION "\" \"User Commands\"\n"
                            ".nh\n.ad l\n" // words are copied: no hyphens at the ends of lines, no wide gaps
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
    page += ".SH OPTIONS\n";
    for (const auto& row : optionTable) {
        page += isShared(row) ? optionPage(row, row.help) : "";
    }
    for (const auto& section : helpSections) {
        page += fmt::format(".SH {}\n", upperCase(section.title));
        for (const auto& line : standalone::split(section.text, '\n')) {
            page += linePage(line);
        }
    }
    return page + termsPage("ENVIRONMENT", variables) + termsPage("FILES", files) + examplesPage();
}

} // namespace tessgen::cli
