#include "cli/pages/Pages.hpp"
#include "cli/pages/Shells.hpp"

#include <fmt/format.h>

namespace tessgen::cli {

namespace {

// In single quotes, where fish still interprets backslashes.
std::string inFish(std::string_view text) {
    std::string out = "'";
    for (const char c : text) {
        out += c == '\'' || c == '\\' ? std::string{'\\', c} : std::string(1, c);
    }
    return out + "'";
}

// The condition that the command line has this command, and `count` operands unless it is 0.
std::string whenCommand(const CommandRow& row, int count) {
    const auto pattern = row.secondWord.empty() ? fmt::format("{} *", row.word) : row.words();
    return fmt::format("__kelwhich_seen {}{}", quoted(pattern), count == 0 ? "" : fmt::format(" {}", count));
}

std::string fishOffer(Completes completes, std::string_view choices = {}) {
    if (!choices.empty()) {
        return (choices.ends_with('=') ? " -r -F -a " : " -x -a ") + inFish(choices);
    }
    return completes == Completes::files      ? " -r -F"
           : completes == Completes::folders  ? " -x -a '(__fish_complete_directories)'"
           : completes == Completes::commands ? fmt::format(" -x -a '{}'", wordsOfCommands(" "))
           : completes == Completes::names    ? " -a '(__kelwhich_names)'"
                                              : " -x";
}

std::string complete(const std::string& condition, const std::string& rest) {
    return fmt::format("complete -c kelwhich -n {}{}\n", inFish(condition), rest);
}

std::string optionOf(const OptionRow& row) {
    std::string condition = row.belongsTo(commandTable.front()) ? "__kelwhich_seen ' '" : "";
    for (const auto& command : commandTable) {
        condition += row.belongsTo(command) ? (condition.empty() ? "" : "; or ") + whenCommand(command, 0) : "";
    }
    return complete(
        condition, fmt::format("{} -l {}{} -d {}", row.letter == 0 ? "" : fmt::format(" -s {}", row.letter), row.name,
                               row.argument == nullptr ? "" : fishOffer(row.completes, row.choices), inFish(row.help)));
}

} // namespace

std::string fishCompletion() {
    auto text = fmt::format(R"(# fish completion for kelwhich
function __kelwhich_seen -a pattern count
    set -l seen
    set -l argument
    for word in (commandline -opc)[2..-1]
        if test -n "$argument"
            set argument
            continue
        end
        switch $word
            case --
                test -n "$seen"; or set seen which # only names follow
                break
            case {}
                set argument 1
            case '-*'
            case '*'
                set -a seen $word
        end
    end
    contains -- "$seen[1]" '' {}; or set -p seen which
    string match -q -- $pattern "$seen[1] $seen[2]"; and test -z "$count" -o "$count" = (count $seen)
end
function __kelwhich_names
    set -l manifest
    set -l words (commandline -opc)
    for i in (seq (count $words))
        switch $words[$i]
            case --
                break
            case -i --installation
                set manifest -i $words[(math $i + 1)]
            case '--installation=*'
                set manifest -i (string replace -- --installation= '' $words[$i])
        end
    end
    kelwhich {} $manifest -- (commandline -ct) 2>/dev/null
end
complete -c kelwhich -f
)",
                            spellingsWithArgument(" "), wordsOfCommands(" "), hiddenWord);
    text += complete("__kelwhich_seen ' '; and test -n (commandline -ct)", fishOffer(Completes::names));
    for (const auto* const row : firstWords()) {
        text += complete("__kelwhich_seen ' '", fmt::format(" -a {} -d {}", row->word, inFish(helpOfFirstWord(*row))));
        for (const auto* const below : commandsBelow(*row)) {
            text += complete(fmt::format("__kelwhich_seen '{} '", row->word),
                             fmt::format(" -a {} -d {}", below->secondWord, inFish(below->help)));
        }
    }
    for (const auto& row : commandTable) {
        if (row.takes != Operands::none && row.completes != Completes::nothing) {
            text += complete(whenCommand(row, row.takesSeveral() ? 0 : wordCount(row)),
                             row.completes == Completes::files ? " -F" : fishOffer(row.completes));
        }
    }
    for (const auto& row : optionTable) {
        text += optionOf(row);
    }
    return text;
}

} // namespace tessgen::cli
