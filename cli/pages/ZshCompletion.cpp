#include "cli/pages/Pages.hpp"
#include "cli/pages/Shells.hpp"

#include <fmt/format.h>

namespace tessgen::cli {

namespace {

// Escapes ":", "[" and "]", which are syntax in zsh's descriptions.
std::string described(std::string_view text) {
    std::string out;
    for (const char c : text) {
        out += c == ':' || c == '[' || c == ']' || c == '\\' ? std::string{'\\', c} : std::string(1, c);
    }
    return out;
}

std::string action(Completes completes, std::string_view choices = {}) {
    if (!choices.empty()) {
        return choices.ends_with('=')
                   ? fmt::format(R"({{ if compset -P "*="; then _files; else compadd -S "" -- {}; fi }})", choices)
                   : fmt::format("({})", choices);
    }
    return completes == Completes::files      ? "_files"
           : completes == Completes::folders  ? "_files -/"
           : completes == Completes::commands ? "_kelwhich_commands"
           : completes == Completes::names    ? "_kelwhich_names"
                                              : " ";
}

std::string specOf(const OptionRow& row) {
    const bool takes = row.argument != nullptr;
    const auto rest = quoted(
        fmt::format("[{}]{}", described(row.help),
                    takes ? fmt::format(":{}:{}", described(row.argument), action(row.completes, row.choices)) : ""));
    const auto name = fmt::format("--{}{}", row.name, takes ? "=" : "");
    return row.letter == 0
               ? name + rest
               : fmt::format("'({})'{{-{}{},{}}}{}", spellings(row, " "), row.letter, takes ? "+" : "", name, rest);
}

std::string specsOf(const CommandRow& command) {
    std::string specs;
    for (const auto& row : optionTable) {
        specs += row.belongsTo(command) ? " \\\n            " + specOf(row) : "";
    }
    return specs;
}

std::string zshCase(const CommandRow& row) {
    const bool mayBeLeftOut = &row == &commandTable.front();
    std::string operands = mayBeLeftOut ? "" : row.secondWord.empty() ? " '1: : '" : " '1: : ' '2: : '";
    if (row.takes == Operands::one || row.takes == Operands::optional) {
        const auto spec = fmt::format("{}:{}:{}", wordCount(row) + 1, described(row.operands), action(row.completes));
        operands.append(" ").append(quoted(spec));
    }
    if (row.takesSeveral()) {
        operands.append(" ").append(quoted(fmt::format("*:{}:{}", described(row.operands), action(row.completes))));
    }
    const auto pattern =
        row.secondWord.empty() ? fmt::format("'{} '*", row.word) : fmt::format("'{} {}'", row.word, row.secondWord);
    return fmt::format("    {})\n        _arguments -s -S{}{}\n        ;;\n", pattern, operands, specsOf(row));
}

// A zsh function that describes `words`.
std::string function(std::string_view name, const std::string& words) {
    return fmt::format("{0}() {{\n    local -a commands=({1}\n    )\n    _describe -t commands command commands\n}}\n",
                       name, words);
}

std::string wordAndHelp(std::string_view word, std::string_view help) {
    return "\n        " + quoted(fmt::format("{}:{}", word, described(help)));
}

} // namespace

std::string zshCompletion() {
    std::string text = "#compdef kelwhich\n";
    std::string first;
    for (const auto* const row : firstWords()) {
        first += wordAndHelp(row->word, helpOfFirstWord(*row));
        std::string second;
        for (const auto* const below : commandsBelow(*row)) {
            second += wordAndHelp(below->secondWord, below->help);
        }
        text += second.empty() ? "" : function(fmt::format("_kelwhich_{}", row->word), second);
    }
    text += function("_kelwhich_commands", first);
    text +=
        fmt::format(R"zsh(_kelwhich_names() {{
    local -a names=(${{(f)"$(kelwhich {} $manifest -- "$PREFIX" 2>/dev/null)"}})
    compadd "$@" -a names
}}
_kelwhich_words() {{
    _kelwhich_commands
    [[ -z $PREFIX ]] || _kelwhich_names
}}
_kelwhich() {{
    local -a seen manifest
    local argument i
    for ((i = 2; i < CURRENT; i++)); do
        if [[ -n $argument ]]; then
            [[ $argument != (-i|--installation) ]] || manifest=(-i ${{~${{(Q)words[i]}}}})
            argument=
            continue
        fi
        case $words[i] in
        --)
            (( $#seen )) || seen=(which) # only names follow
            break
            ;;
        {}) argument=$words[i] ;;
        --installation=*) manifest=(-i ${{(Q)words[i]#*=}}) ;;
        -*) ;;
        *) seen+=($words[i]) ;;
        esac
    done
    case "$seen[1]" in
    '' | {}) ;;
    *) seen=(which $seen) ;;
    esac
    case "$seen[1] $seen[2]" in
    ' ')
        _arguments -s -S '1: :_kelwhich_words'{}
        ;;
)zsh",
                    hiddenWord, spellingsWithArgument(" | "), wordsOfCommands(" | "), specsOf(commandTable.front()));
    for (const auto& row : commandTable) {
        text += zshCase(row);
    }
    for (const auto* const row : firstWords()) {
        if (row->secondWord.empty()) {
            continue;
        }
        text += fmt::format("    '{0} ') _arguments -s -S '1: : ' '2: :_kelwhich_{0}' ;;\n", row->word);
    }
    return text + "    esac\n}\n_kelwhich \"$@\"\n";
}

} // namespace tessgen::cli
