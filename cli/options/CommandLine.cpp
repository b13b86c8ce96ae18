#include "cli/options/CommandLine.hpp"

#include "cli/output/Console.hpp"

#include <fmt/format.h>

#include <getopt.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

constexpr int operandCode = 1;     // getopt's code for a word that is not an option
constexpr int firstOption = 0x100; // code of the table's first option; the others follow, above every letter

[[noreturn]] void refuse(const std::string& why) {
    throw std::runtime_error(why + "; see kelwhich --help");
}

// "-" makes getopt return operands one by one; ":" makes it distinguish a missing argument from an unknown option.
std::string lettersForGetopt() {
    std::string letters = "-:";
    for (const auto& row : optionTable) {
        if (row.letter != 0) {
            letters.append(1, row.letter).append(row.argument == nullptr ? "" : ":");
        }
    }
    return letters;
}

std::vector<option> namesForGetopt() {
    std::vector<option> names;
    for (const auto& row : optionTable) {
        const int code = firstOption + static_cast<int>(names.size());
        names.push_back({row.name, row.argument == nullptr ? no_argument : required_argument, nullptr, code});
    }
    names.emplace_back(); // the end of the list
    return names;
}

// The option with getopt's `code`: its letter, or its position in the table; null for any other code.
const OptionRow* findOption(int code) {
    if (code >= firstOption) {
        return &optionTable[static_cast<std::size_t>(code - firstOption)];
    }
    const auto row = std::find_if(optionTable.begin(), optionTable.end(),
                                  [code](const auto& r) { return r.letter != 0 && r.letter == code; });
    return row == optionTable.end() ? nullptr : &*row;
}

// `word` is the one that getopt rejected; `optopt` is the option, if there is such.
[[noreturn]] void refuseOption(bool lacksArgument, const char* word) {
    const auto* const row = findOption(optopt);
    if (row != nullptr) {
        refuse(lacksArgument ? fmt::format("option --{} needs an argument: {}", row->name, row->argument)
                             : fmt::format("option --{} takes no argument", row->name));
    }
    refuse(fmt::format("unknown option '{}'", optopt == 0 ? word : std::string{'-', static_cast<char>(optopt)}));
}

class CommandLineReader {
public:
    CommandLineReader(int count, char** words) : count_(count), words_(words) {}

    Request read() {
        const auto letters = lettersForGetopt();
        const auto names = namesForGetopt();
        opterr = 0;
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the program has one thread
        for (int code = 0; (code = getopt_long(count_, words_, letters.c_str(), names.data(), nullptr)) != -1;) {
            try {
                read(code);
            } catch (const std::runtime_error&) {
                error_ = error_ ? error_ : std::current_exception();
            }
            if (!error_ && (request_.action == Action::help || request_.action == Action::version)) {
                return request_;
            }
        }
        // Report only now: a later --json decides the format.
        if (error_) {
            std::rethrow_exception(error_);
        }
        readAllOperands();
        check();
        return request_;
    }

private:
    void read(int code) {
        if (code == operandCode) {
            readWord(optarg);
        } else if (const auto* const row = findOption(code)) {
            checkWhole(code, *row);
            readOption(*row);
        } else {
            refuseOption(code == ':', words_[optind - 1]);
        }
    }

    // getopt accepts a prefix of a name, which may become ambiguous when an option is added.
    void checkWhole(int code, const OptionRow& row) const {
        const bool isArgumentApart = optarg != nullptr && optarg == words_[optind - 1];
        const std::string_view word = words_[optind - (isArgumentApart ? 2 : 1)];
        const auto name = word.substr(0, word.find('='));
        if (code >= firstOption && name != fmt::format("--{}", row.name)) {
            refuse(fmt::format("option --{} cannot be abbreviated to '{}'", row.name, name));
        }
    }

    void readOption(const OptionRow& row) {
        if (optarg != nullptr && *optarg == '\0') {
            refuse(fmt::format("option --{}: {} is empty", row.name, row.argument));
        }
        row.apply(request_, optarg);
        if (request_.json) {
            reportErrorsInJSON(); // usage errors included
        }
        seen_.push_back(&row);
    }

    void readWord(const std::string& word) {
        if (std::exchange(mayBeCommand_, false) && readCommand(word)) {
            return;
        }
        request_.operands.push_back(word);
        if (command_->takes == Operands::names) {
            readAllOperands();
        }
    }

    bool readCommand(const std::string& word) {
        std::vector<std::string> possible; // the commands whose first word this is
        for (const auto& row : commandTable) {
            if (row.word != word) {
                continue;
            }
            if (row.secondWord.empty() || (optind < count_ && words_[optind] == row.secondWord)) {
                optind += row.secondWord.empty() ? 0 : 1;
                command_ = &row;
                request_.action = row.action;
                request_.command = &row;
                return true;
            }
            possible.push_back(row.words());
        }
        if (!possible.empty()) {
            refuse(fmt::format("'{0}' is the first word of a command: '{1}'; for the name use: kelwhich -- {0}", word,
                               fmt::join(possible, "', '")));
        }
        return false;
    }

    void readAllOperands() {
        request_.operands.insert(request_.operands.end(), words_ + optind, words_ + count_);
        optind = count_;
    }

    void check() const {
        for (const auto* const row : seen_) {
            if (!row->belongsTo(*command_)) {
                refuse(fmt::format("option --{} cannot be used with '{}'", row->name, command_->words()));
            }
        }
        if (request_.replay && (request_.installation || request_.record)) {
            refuse(
                fmt::format("--replay and --{} cannot be combined", request_.installation ? "installation" : "record"));
        }
        checkWhich();
        const auto takes = command_->takes;
        const auto given = request_.operands.size();
        if (request_.from) {
            if (given > 0) {
                refuse("names on the command line and --from cannot be combined");
            }
            return;
        }
        if (given == 0 && (takes == Operands::names || takes == Operands::one)) {
            refuse(fmt::format("{} is missing", command_->operands));
        }
        if (given > 0 && takes == Operands::none) {
            refuse(fmt::format("'{}' takes no operand, but got '{}'", command_->words(), request_.operands.front()));
        }
        if (given > 1 && takes != Operands::names) {
            refuse(fmt::format("'{}' takes one {}, but got {}", command_->words(), command_->operands, given));
        }
    }

    void checkWhich() const {
        std::vector<std::string> forms; // of the output; at most one may be given
        for (const auto& [isGiven, name] :
             {std::pair(request_.json, "--json"), {request_.null, "--null"}, {request_.quiet, "--quiet"}}) {
            if (isGiven) {
                forms.emplace_back(name);
            }
        }
        if (forms.size() > 1) {
            refuse(fmt::format("{} cannot be combined", fmt::join(forms, " and ")));
        }
    }

    std::exception_ptr error_;
    int count_;
    char** words_;
    Request request_;
    bool mayBeCommand_ = true;
    const CommandRow* command_ = &commandTable.front();
    std::vector<const OptionRow*> seen_;
};

} // namespace

Request readCommandLine(int count, char** words) {
    return CommandLineReader(count, words).read();
}

} // namespace tessgen::cli
