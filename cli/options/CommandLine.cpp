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

constexpr int otherWord = 1;       // what getopt answers for a word that is no option
constexpr int firstAnswer = 0x100; // of the options, above every letter: each is answered by its place in the table

[[noreturn]] void refuse(const std::string& why) {
    throw std::runtime_error(why + "; see kelwhich --help");
}

// "-" has getopt hand over words one by one; ":" has it tell a missing argument from an unknown option.
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
        const int answer = firstAnswer + static_cast<int>(names.size());
        names.push_back({row.name, row.argument == nullptr ? no_argument : required_argument, nullptr, answer});
    }
    names.emplace_back(); // an empty one ends them
    return names;
}

// The option that getopt answers by its letter or by its place; null for any other answer.
const OptionRow* findOption(int answer) {
    if (answer >= firstAnswer) {
        return &optionTable[static_cast<std::size_t>(answer - firstAnswer)];
    }
    const auto row = std::find_if(optionTable.begin(), optionTable.end(),
                                  [answer](const auto& r) { return r.letter != 0 && r.letter == answer; });
    return row == optionTable.end() ? nullptr : &*row;
}

// `word` is the one that getopt stumbled over; `optopt` tells the option, if it is one.
[[noreturn]] void refuseOption(bool lacksArgument, const char* word) {
    const auto* const row = findOption(optopt);
    if (row != nullptr) {
        refuse(lacksArgument ? fmt::format("option --{} needs its {}", row->name, row->argument)
                             : fmt::format("option --{} takes no argument", row->name));
    }
    refuse(fmt::format("there is no option '{}'", optopt == 0 ? word : std::string{'-', static_cast<char>(optopt)}));
}

class CommandLineReader {
public:
    CommandLineReader(int count, char** words) : count_(count), words_(words) {}

    Request read() {
        const auto letters = lettersForGetopt();
        const auto names = namesForGetopt();
        opterr = 0;
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the program has one thread
        for (int answer = 0; (answer = getopt_long(count_, words_, letters.c_str(), names.data(), nullptr)) != -1;) {
            try {
                take(answer);
            } catch (const std::runtime_error&) {
                error_ = error_ ? error_ : std::current_exception();
            }
            if (!error_ && (request_.action == Action::help || request_.action == Action::version)) {
                return request_;
            }
        }
        // Not earlier: an option of the words that follow may say how the error is to be told.
        if (error_) {
            std::rethrow_exception(error_);
        }
        takeAllOperands();
        check();
        return request_;
    }

private:
    void take(int answer) {
        if (answer == otherWord) {
            takeWord(optarg);
        } else if (const auto* const row = findOption(answer)) {
            checkWhole(answer, *row);
            takeOption(*row);
        } else {
            refuseOption(answer == ':', words_[optind - 1]);
        }
    }

    // getopt takes the beginning of a name for the name, which another option may share one day.
    void checkWhole(int answer, const OptionRow& row) const {
        const bool isArgumentApart = optarg != nullptr && optarg == words_[optind - 1];
        const std::string_view word = words_[optind - (isArgumentApart ? 2 : 1)];
        const auto name = word.substr(0, word.find('='));
        if (answer >= firstAnswer && name != fmt::format("--{}", row.name)) {
            refuse(fmt::format("there is no option '{}'; --{} is written whole", name, row.name));
        }
    }

    void takeOption(const OptionRow& row) {
        if (optarg != nullptr && *optarg == '\0') {
            refuse(fmt::format("the {} of option --{} is empty", row.argument, row.name));
        }
        row.apply(request_, optarg);
        if (request_.json) {
            reportErrorsInJSON(); // also of words that make no request
        }
        met_.push_back(&row);
    }

    void takeWord(const std::string& word) {
        if (std::exchange(mayBeCommand_, false) && takeCommand(word)) {
            return;
        }
        request_.operands.push_back(word);
        if (command_->takes == Operands::names) {
            takeAllOperands();
        }
    }

    bool takeCommand(const std::string& word) {
        std::vector<std::string> possible; // the commands that begin with this word
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
            refuse(fmt::format("'{0}' begins the command '{1}'; for the name: kelwhich -- {0}", word,
                               fmt::join(possible, "' or '")));
        }
        return false;
    }

    void takeAllOperands() {
        request_.operands.insert(request_.operands.end(), words_ + optind, words_ + count_);
        optind = count_;
    }

    void check() const {
        for (const auto* const row : met_) {
            if (!row->belongsTo(*command_)) {
                refuse(fmt::format("option --{} does not belong to '{}'", row->name, command_->words()));
            }
        }
        if (request_.replay && (request_.installation || request_.record)) {
            refuse(fmt::format("--replay needs no installation and makes no recording: leave out --replay or --{}",
                               request_.installation ? "installation" : "record"));
        }
        checkWhich();
        const auto takes = command_->takes;
        const auto given = request_.operands.size();
        if (request_.from) {
            if (given > 0) {
                refuse("names on the command line and --from exclude each other");
            }
            return;
        }
        if (given == 0 && (takes == Operands::names || takes == Operands::one)) {
            refuse(fmt::format("{} is missing", command_->operands));
        }
        if (given > 0 && takes == Operands::none) {
            refuse(fmt::format("'{}' takes no operand, not '{}'", command_->words(), request_.operands.front()));
        }
        if (given > 1 && takes != Operands::names) {
            refuse(fmt::format("'{}' takes one {}, not {}", command_->words(), command_->operands, given));
        }
    }

    void checkWhich() const {
        std::vector<std::string> forms; // of which one can be written
        for (const auto& [isAsked, name] :
             {std::pair(request_.json, "--json"), {request_.null, "--null"}, {request_.quiet, "--quiet"}}) {
            if (isAsked) {
                forms.emplace_back(name);
            }
        }
        if (forms.size() > 1) {
            refuse(fmt::format("{} exclude each other", fmt::join(forms, " and ")));
        }
    }

    std::exception_ptr error_;
    int count_;
    char** words_;
    Request request_;
    bool mayBeCommand_ = true;
    const CommandRow* command_ = &commandTable.front();
    std::vector<const OptionRow*> met_;
};

} // namespace

Request readCommandLine(int count, char** words) {
    return CommandLineReader(count, words).read();
}

} // namespace tessgen::cli
