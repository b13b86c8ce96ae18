// Changes texts of JSON value by value, so that most of them are JSON still; libFuzzer's own changes alone hardly get
// past the parser.
#include "fuzz/Fuzz.hpp"

#include <array>
#include <random>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed);

namespace {

constexpr auto someValues =
    std::to_array<std::string_view>({R"("")", R"("a")", R"("/")", R"("..")", R"("a/b")", R"("@a/a.vk")", R"("\u0000")",
                                     "[]", "{}", "true", "null", "1"});

struct Words {
    std::vector<std::string_view> values; // strings that are no keys, numbers and the like
    std::vector<std::string_view> others;
};

Words wordsOf(std::string_view text) {
    constexpr std::string_view signs = "{}[]:, \n";
    Words words;
    for (std::size_t at = 0; at < text.size();) {
        auto end = at + 1;
        const bool isSign = signs.find(text[at]) != std::string_view::npos;
        if (text[at] == '"') {
            while (end < text.size() && text[end++] != '"') {
            }
        } else if (!isSign) {
            end = std::min(text.find_first_of(signs, at), text.size());
        }
        const bool isValue = !isSign && !text.substr(end).starts_with(':');
        (isValue ? words.values : words.others).push_back(text.substr(at, end - at));
        at = end;
    }
    return words;
}

} // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed) {
    std::minstd_rand random(seed);
    const auto below = [&random](std::size_t bound) { return static_cast<std::size_t>(random()) % bound; };
    std::string text(tessgen::fuzz::textOf(data, size));
    const auto [values, others] = wordsOf(text);
    const auto& words = values.empty() || (below(8) == 0 && !others.empty()) ? others : values;
    if (words.empty() || below(8) == 0) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    const auto old = words[below(words.size())];
    std::string made(below(2) == 0 ? someValues[below(someValues.size())] : words[below(words.size())]);
    if (old.size() > 1 && old.front() == '"' && below(3) == 0) { // the text between the quotes
        made = std::string(old).append(16, '"');
        made.resize(1 + LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(&made[1]), old.size() - 2, old.size() + 8));
        made += '"';
    } else if (below(4) == 0) {
        made = std::string(old) + "," + made;
    }
    text.replace(static_cast<std::size_t>(old.data() - text.data()), old.size(), made);
    const auto length = std::min(text.size(), maxSize);
    std::copy_n(text.begin(), length, data);
    return length;
}
