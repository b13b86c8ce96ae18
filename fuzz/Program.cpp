// Words of a command line of any bytes, one a line: a request or an error of one line; and what is printed of them is
// whole lines of UTF-8 that rule no terminal and mean the words. A word that is a line of a lock is written as one
// again.
#include "cli/locking/Lock.hpp"
#include "cli/options/CommandLine.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Render.hpp"
#include "fuzz/Fuzz.hpp"
#include "standalone/text/Text.hpp"

#include <nlohmann/json.hpp>

#include <getopt.h>
#include <stdexcept>
#include <utf8.h>
#include <vector>

namespace {

using namespace tessgen;
using fuzz::require;
using nlohmann::json;

// The inverse of `escaped`, and of what stands in $'...'.
std::string unescaped(std::string_view text) {
    std::string out;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\') {
            out += text[at];
            continue;
        }
        const char kind = text.at(++at);
        if (kind == '\\' || kind == '\'') {
            out += kind;
            continue;
        }
        const bool inBraces = text.at(at + 1) == '{';
        const auto code = inBraces ? text.substr(at + 2, text.find('}', at) - at - 2) : text.substr(at + 1, 2);
        at += code.size() + (inBraces ? 2 : 0);
        const auto value = std::stoul(std::string(code), nullptr, 16);
        require(kind == 'u' || kind == 'x', "known codes", text);
        kind == 'u' ? static_cast<void>(utf8::append(static_cast<char32_t>(value), std::back_inserter(out)))
                    : out.push_back(static_cast<char>(value));
    }
    return out;
}

// What a shell takes for one word, when it is quoted as `shellWord` does.
std::string unquoted(std::string word) {
    if (word.starts_with("$'")) {
        return unescaped(std::string_view(word).substr(2, word.size() - 3));
    }
    if (word.starts_with('\'')) {
        word = word.substr(1, word.size() - 2);
        for (std::size_t at = 0; (at = word.find(R"('\'')", at)) != std::string::npos; ++at) {
            word.replace(at, 4, "'");
        }
    }
    return word;
}

// One line, UTF-8, no control character, no mark that turns the direction of writing. These are named once more,
// apart from those that the program knows.
bool isSafe(std::string_view line) {
    const auto units = standalone::toUTF16(line);
    const auto isUnsafe = [](char16_t c) {
        return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x061C || c == 0x200E || c == 0x200F
               || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
    };
    return units && std::none_of(units->begin(), units->end(), isUnsafe);
}

void requireSafeText(const std::string& word) {
    const auto escaped = cli::escaped(word);
    require(isSafe(escaped) && unescaped(escaped) == word, "an escaped word is safe and means the word", escaped);
    const auto quoted = cli::shellWord(word);
    require(isSafe(quoted) && unquoted(quoted) == word, "a quoted word is safe and means the word", quoted);
}

void requireSafeLockLine(const std::string& word) {
    try {
        const auto locked = analysis::readLockLine(word, cli::lockSpelling);
        const auto line = analysis::lockLine(locked, cli::lockSpelling);
        require(analysis::readLockLine(line, cli::lockSpelling) == locked, "a line of a lock means what was read",
                line);
        require(analysis::lockHead < line, "a line of a lock follows the first", line);
        for (const auto& field : standalone::split(line, '\t')) {
            require(isSafe(field), "a field is safe", line);
        }
    } catch (const std::runtime_error& error) {
        require(isSafe(error.what()), "an error is one safe line", error.what());
    }
}

void requireSafeError(std::string_view text) {
    const auto line = cli::asJSONLine(text, text);
    require(isSafe(std::string_view(line).substr(0, line.size() - 1)), "an error in JSON is a safe line", line);
    const bool isText = utf8::is_valid(text.begin(), text.end());
    require(json::parse(line).at("query") == (isText ? std::string(text) : cli::escaped(text)),
            "an error in JSON means it", line);
}

void requireSafeAnswer(const std::vector<std::string>& words) {
    cli::Answer answer;
    answer.query = words.front();
    for (std::size_t i = 1; i < words.size(); ++i) {
        answer.candidates.push_back(
            {words[i], static_cast<kelwhich::WhichResultType>(i % 5), i % 2 == 0, true, false, i % 3 == 0});
    }
    const auto text = standalone::split(cli::asText(answer, false), '\n');
    require(text.size() == 2 + std::max<std::size_t>(1, words.size() - 1) && text.back().empty(), "a line for each");
    for (const auto& line : text) {
        require(isSafe(line), "a line is safe", line);
    }
    // One of the two for each input, so that more of them are tried.
    const auto written = words.front().size() % 2 == 0 ? cli::asJSON({answer}) : cli::asJSONLine(answer);
    const auto document = json::parse(written);
    const auto& read = document.contains("answers") ? document["answers"].at(0) : document;
    require(read.at("query") == words.front(), "the query is in the JSON", written);
    for (std::size_t i = 1; i < words.size(); ++i) {
        require(read.at("candidates").at(i - 1).at("path") == words[i], "a path is in the JSON", written);
    }
    for (const auto& line : standalone::split(written, '\n')) {
        require(isSafe(line), "a line of JSON is safe", line);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::textOf(data, size);
    requireSafeError(text);
    auto words = standalone::split(text, '\n');
    std::vector<std::string> texts;
    std::vector<char*> arguments;
    std::string program = "kelwhich";
    arguments.push_back(program.data());
    for (auto& word : words) {
        requireSafeText(word);
        requireSafeLockLine(word);
        if (utf8::is_valid(word.begin(), word.end())) {
            texts.push_back(word);
        }
        word.resize(std::min(word.find('\0'), word.size()));
        arguments.push_back(word.data());
    }
    if (!texts.empty()) {
        requireSafeAnswer(texts);
    }
    arguments.push_back(nullptr);
    optind = 0; // begins anew
    try {
        const auto request = cli::readCommandLine(static_cast<int>(arguments.size()) - 1, arguments.data());
        require(request.operands.size() <= words.size(), "operands are words");
    } catch (const std::runtime_error& error) {
        require(isSafe(cli::escaped(error.what())), "an error is one safe line", error.what());
    }
    return 0;
}
