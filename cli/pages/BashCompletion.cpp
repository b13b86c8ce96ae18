#include "cli/pages/Pages.hpp"
#include "cli/pages/Shells.hpp"

#include <fmt/format.h>

namespace tessgen::cli {

namespace {

// The value of `offer`: compgen's option for files or folders, "names", or the words themselves.
std::string bashOffer(Completes completes, std::string_view choices = {}) {
    if (!choices.empty()) {
        return quoted(choices);
    }
    return completes == Completes::files      ? "-f"
           : completes == Completes::folders  ? "-d"
           : completes == Completes::commands ? quoted(wordsOfCommands(" "))
           : completes == Completes::names    ? "names"
                                              : "";
}

std::string optionsOf(const CommandRow& command) {
    std::string names;
    for (const auto& row : optionTable) {
        names += row.belongsTo(command) ? fmt::format("{}--{}", names.empty() ? "" : " ", row.name) : "";
    }
    return quoted(names);
}

std::string bashCase(const CommandRow& row) {
    const auto pattern =
        row.secondWord.empty() ? fmt::format("'{} '*", row.word) : fmt::format("'{} {}'", row.word, row.secondWord);
    std::string operand;
    if (row.takes != Operands::none) {
        operand = fmt::format("offer={}\n            ", bashOffer(row.completes));
        if (!row.takesSeveral()) {
            operand.insert(0, fmt::format("[[ $count != {} ]] || ", wordCount(row)));
        }
    }
    return fmt::format("        {})\n            {}options={}\n            ;;\n", pattern, operand, optionsOf(row));
}

} // namespace

std::string bashCompletion() {
    std::string text = R"(# bash completion for kelwhich
_kelwhich() {
    local word=${COMP_WORDS[COMP_CWORD]} seen=() ended= argument= offer= options= isFirst= manifest=() count i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        if [[ $argument ]]; then
            [[ ${COMP_WORDS[i]} != = ]] || continue
            [[ $argument != installation ]] || manifest=(-i "${COMP_WORDS[i]/#\~\//$HOME/}")
            argument= offer=
        elif [[ $ended ]]; then
            seen+=("${COMP_WORDS[i]}")
        else
            case ${COMP_WORDS[i]} in
            --)
                ended=1
                [[ ${seen[0]-} ]] || seen=(which) # only names follow
                ;;
)";
    for (const auto& row : optionTable) {
        if (row.argument != nullptr) {
            text += fmt::format("            {}) argument={} offer={} ;;\n", spellings(row, " | "), row.name,
                                bashOffer(row.completes, row.choices));
        }
    }
    text += R"(            -*) ;;
            =) argument=file offer=-f ;; # after a format
            *) seen+=("${COMP_WORDS[i]}") ;;
            esac
        fi
    done
    [[ $word != = || $argument ]] || argument=file offer=-f
    count=${#seen[@]}
    if [[ ! $argument ]]; then
        case "${seen[0]-} ${seen[1]-}" in
        ' ')
)";
    text += fmt::format("            offer={} isFirst=1\n            options={}\n            ;;\n",
                        quoted(wordsOfCommands(" ")), optionsOf(commandTable.front()));
    for (const auto& row : commandTable) {
        text += bashCase(row);
    }
    for (const auto* const first : firstWords()) {
        if (!commandsBelow(*first).empty()) {
            text += fmt::format("        '{} ') offer={} ;;\n", first->word, quoted(secondWords(*first, " ")));
        }
    }
    text += fmt::format("        *) offer=names options={} ;;\n", optionsOf(commandTable.front()));
    text += R"(        esac
        [[ $word != -* || $ended ]] || offer=$options isFirst=
    fi
    [[ $word != = ]] || word=
    case $offer in
    names) ;;
    -?)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen "$offer" -- "$word")
        ;;
    ?*)
        [[ $offer != *= ]] || compopt -o nospace 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -W "$offer" -- "$word")
        ;;
    esac
    if [[ $offer == names || ($isFirst && $word) ]]; then
        mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <()";
    text += fmt::format(R"(kelwhich {} "${{manifest[@]}}" -- "$word" 2>/dev/null)
    fi
}}
complete -F _kelwhich kelwhich
)",
                        hiddenWord);
    return text;
}

} // namespace tessgen::cli
