#include "standalone/json/JsonEdit.hpp"

#include "standalone/json/JsonPlaces.hpp"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <utility>

namespace tessgen::standalone {

namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

// A list or object, by places in the text.
struct Container {
    std::size_t separator; // the last "," between its elements, else its opening bracket
    std::size_t end;       // its closing bracket
};

Container containerAt(std::string_view text, std::size_t begin) {
    Container found{begin, begin};
    std::size_t depth = 0;
    bool isInString = false;
    for (auto place = begin;; ++place) {
        const char c = text.at(place);
        if (isInString) {
            place += c == '\\' ? 1U : 0U;
            isInString = c != '"';
        } else if (c == '"') {
            isInString = true;
        } else if (c == '{' || c == '[') {
            ++depth;
        } else if ((c == '}' || c == ']') && --depth == 0) {
            found.end = place;
            return found;
        } else if (c == ',' && depth == 1) {
            found.separator = place;
        }
    }
}

// Adds JSON texts at the end of the list or object that begins there.
void append(std::string& text, std::size_t begin, const std::vector<std::string>& elements) {
    const auto [separator, end] = containerAt(text, begin);
    const auto last = text.find_first_not_of(whiteSpace, separator + 1); // its first byte, or the closing bracket
    const bool isEmpty = last == end;
    auto gap = text.substr(separator + 1, last - separator - 1);
    if (isEmpty || (separator == begin && gap.find('\n') == std::string::npos)) {
        gap = " "; // no "," shows how elements of one line are laid out
    }
    std::string added;
    for (const auto& element : elements) {
        added.append(isEmpty && added.empty() ? "" : "," + gap).append(element);
    }
    text.insert(isEmpty ? begin + 1 : text.find_last_not_of(whiteSpace, end - 1) + 1, added);
}

} // namespace

std::string withElements(std::string text, const std::string& key, const std::vector<std::string>& elements) {
    if (elements.empty()) {
        return text;
    }
    const auto list = placeOfValue(text, key); // the object when the key is missing
    if (list == placeOfValue(text, "")) {
        std::string value = "[]";
        append(value, 0, elements);
        return withMember(std::move(text), key, value);
    }
    append(text, list, elements);
    return text;
}

std::string withMember(std::string text, const std::string& key, const std::string& value) {
    append(text, placeOfValue(text, ""), {nlohmann::json(key).dump() + ": " + value});
    return text;
}

} // namespace tessgen::standalone
