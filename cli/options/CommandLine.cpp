#include "cli/options/CommandLine.hpp"

#include "cli/options/Spelling.hpp"
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

[[noreturn]] void refuse(const std::string& why, const std::string& advice = "see kelwhich --help") {
    throw std::runtime_error(why + "; " + advice);
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
[[noreturn]] void refuseOption(bool lacksArgument, std::string_view word) {
    const auto* const row = findOption(optopt);
    if (row != nullptr) {
        refuse(lacksArgument ? fmt::format("option --{} needs an argument: {}", row->name, row->argument)
                             : fmt::format("option --{} takes no argument", row->name));
    }
    if (const auto meant = optionsLike(word); !meant.empty()) {
        refuseWord("option", word, meant);
    }
    refuse(fmt::format("unknown option '{}'", optopt == 0 ? word : std::string{'-', static_cast<char>(optopt)}),
           "a name that begins with - goes after --; see kelwhich --help");
}

class CommandLineReader {
public:
    CommandLineReader(int count, char** words)
        : count_(count), words_(words), letters_(lettersForGetopt()), names_(namesForGetopt()) {}

    Request read() {
        opterr = 0;
        for (int code = 0; (code = nextCode()) != -1;) {
            try {
                read(code);
            } catch (const std::runtime_error&) {
                error_ = error_ ? error_ : std::current_exception();
            }
            if (!error_ && request_.action == Action::version) {
                return request_;
            }
            if (!error_ && request_.action == Action::help) {
                readTopic();
                return request_;
            }
        }
        // Report only now: a later --json decides the format.
        if (error_) {
            std::rethrow_exception(error_);
        }
        readCommand();
        request_.operands.insert(request_.operands.end(), words_ + optind, words_ + count_);
        if (request_.action == Action::help) {
            request_.topic = topicOf(std::exchange(request_.operands, {}), true);
        }
        check();
        return request_;
    }

private:
    int nextCode() {
        const int next = std::max(optind, 1); // 0 makes getopt begin anew
        word_ = next < count_ ? words_[next] : "";
        // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs yet
        return getopt_long(count_, words_, letters_.c_str(), names_.data(), nullptr);
    }

    void read(int code) {
        if (code == operandCode) {
            request_.operands.emplace_back(optarg);
        } else if (const auto* const row = findOption(code)) {
            checkWhole(code, *row);
            readOption(*row);
        } else {
            refuseOption(code == ':', word_);
        }
    }

    // getopt accepts a prefix of a name, which may become ambiguous when an option is added, and takes -first for the
    // letter f with an argument.
    void checkWhole(int code, const OptionRow& row) const {
        const auto name = word_.substr(0, word_.find('='));
        if (code >= firstOption && name != fmt::format("--{}", row.name)) {
            refuse(fmt::format("option --{} cannot be abbreviated to '{}'", row.name, name));
        }
        if (code < firstOption && isOption(word_.substr(1))) {
            refuseWord("option", word_, {fmt::format("-{}", word_)});
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

    // Reads what --help is about from the words that are left.
    void readTopic() {
        for (int code = 0; (code = nextCode()) != -1;) {
            if (code == operandCode) {
                request_.operands.emplace_back(optarg);
            }
        }
        request_.topic = topicOf(request_.operands, false);
    }

    // Removes the words of the command from the front of the operands.
    void readCommand() {
        auto& given = request_.operands;
        if (given.empty()) {
            return;
        }
        if (const auto* const row = findCommand(given)) {
            command_ = row;
            isCommandGiven_ = true;
            request_.onlyWord = count_ == 2 ? given.front() : "";
            request_.action = row->action;
            given.erase(given.begin(), given.begin() + (row->secondWord.empty() ? 1 : 2));
        } else if (const auto words = commandsBeginning(given.front()); !words.empty()) {
            refuseSecondWord(given);
            refuse(fmt::format("'{0}' is the first word of a command: '{1}'; for the name use: kelwhich -- {0}",
                               given.front(), fmt::join(words, "', '")));
        } else {
            request_.mayMeanCommand = true;
        }
    }

    // After an error about the words of a command: they may have been meant as a name.
    [[nodiscard]] std::string adviceForName() const {
        return isCommandGiven_ && command_->secondWord.empty()
                   ? fmt::format("for the name use: kelwhich -- {}", command_->word)
                   : "see kelwhich --help";
    }

    void check() const {
        for (const auto* const row : seen_) {
            if (!row->belongsTo(*command_)) {
                refuse(fmt::format("option --{} cannot be used with '{}'", row->name, command_->words()),
                       fmt::format("see kelwhich {} --help", command_->words()));
            }
        }
        if (request_.replay && (request_.installation || request_.record)) {
            refuse(
                fmt::format("--replay and --{} cannot be combined", request_.installation ? "installation" : "record"));
        }
        checkWhich();
        checkInit();
        checkReports();
        checkLocks();
        const auto takes = command_->takes;
        const auto given = request_.operands.size();
        if (request_.from && request_.action == Action::which) {
            if (given > 0) {
                refuse("names on the command line and --from cannot be combined");
            }
            return;
        }
        if (given == 0 && (takes == Operands::names || takes == Operands::one || takes == Operands::two)) {
            refuse(fmt::format("{} is missing{}", command_->operands,
                               isCommandGiven_ ? fmt::format(" after '{}'", command_->words()) : ""),
                   adviceForName());
        }
        if (given > 0 && takes == Operands::none) {
            refuse(fmt::format("'{}' takes no operand, but got '{}'", command_->words(), request_.operands.front()),
                   adviceForName());
        }
        if (takes == Operands::two && given != 2) {
            refuse(fmt::format("'{}' takes {}, but got {}", command_->words(), command_->operands, given));
        }
        if (given > 1 && !command_->takesSeveral()) {
            refuse(fmt::format("'{}' takes one {}, but got {}", command_->words(), command_->operands, given));
        }
    }

    void checkWhich() const {
        std::vector<std::string> forms; // of the output; at most one may be given
        for (const auto& [isGiven, name] :
             {std::pair(request_.json, "--json"), {request_.null, "--null"}, {request_.quiet, "--quiet"}}) {
            if (isGiven && request_.action == Action::which) {
                forms.emplace_back(name);
            }
        }
        if (forms.size() > 1) {
            refuse(fmt::format("{} cannot be combined", fmt::join(forms, " and ")));
        }
    }

    void checkInit() const {
        if (request_.update && (request_.force || !request_.sourceCodeFolders.empty())) {
            refuse(fmt::format("--update and --{} cannot be combined", request_.force ? "force" : "source-code"));
        }
        if (request_.action == Action::init && request_.installation && !request_.update) {
            refuse("--installation can be used with 'init' only after --update");
        }
    }

    void checkReports() const {
        if (request_.updateBaseline && !request_.baseline) {
            refuse("--update-baseline needs --baseline FILE");
        }
        const auto isOutput = [](const ReportTarget& target) { return target.file == "-"; };
        if (request_.json && std::any_of(request_.reports.begin(), request_.reports.end(), isOutput)) {
            refuse("--json and a --report to standard output cannot be combined");
        }
    }

    void checkLocks() const {
        const bool isLock = request_.action == Action::lock;
        if (isLock && request_.lockToCheck && request_.output) {
            refuse("--check and --output cannot be combined");
        }
        if (isLock && !request_.lockToCheck && (request_.json || !request_.reports.empty())) {
            refuse(fmt::format("--{} needs --check with 'lock'", request_.json ? "json" : "report"));
        }
        const bool isCheck = request_.action == Action::check;
        if (request_.action != Action::which && request_.null && !(isCheck ? request_.names : request_.from)) {
            refuse(fmt::format("--null needs --{} with '{}'", isCheck ? "names" : "from", command_->words()));
        }
        auto inputs = request_.action == Action::diff ? request_.operands : std::vector<std::string>();
        inputs.insert(inputs.end(), {request_.from.value_or(""), request_.lockToCheck.value_or("")});
        if (std::count(inputs.begin(), inputs.end(), "-") > 1) {
            refuse("standard input can be read once only");
        }
    }

    std::exception_ptr error_;
    int count_;
    char** words_;
    Request request_;
    const std::string letters_;
    const std::vector<option> names_;
    std::string_view word_; // that getopt reads from
    bool isCommandGiven_ = false;
    const CommandRow* command_ = &commandTable.front();
    std::vector<const OptionRow*> seen_;
};

} // namespace

Request readCommandLine(int count, char** words) {
    return CommandLineReader(count, words).read();
}

} // namespace tessgen::cli
