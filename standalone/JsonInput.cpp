#include "standalone/JsonInput.hpp"

#include "standalone/JsonPlaces.hpp"
#include "standalone/Text.hpp"

#include <algorithm>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

namespace tessgen::standalone {

namespace {

using nlohmann::json;

// Without the parser's own prefix and without the text that it read last, which may be long and may be anything.
std::string detailOf(const json::parse_error& error) {
    std::string detail = error.what();
    if (const auto begin = detail.find(" - "); begin != std::string::npos) {
        detail.erase(0, begin + 3);
    }
    constexpr std::string_view lastRead = "; last read: '";
    if (const auto begin = detail.find(lastRead); begin != std::string::npos) {
        detail.erase(begin, detail.rfind('\'') + 1 - begin);
    }
    return detail;
}

// `byte` is counted from 0.
JsonSyntaxError syntaxError(std::string_view text, std::size_t byte, const std::string& what) {
    const auto [line, column] = lineAndColumn(text, byte);
    return {what, line, column};
}

// As it is; only the beginning of a text that is long or holds a NUL, at which an error's message would end.
std::string inQuotes(std::string_view text) {
    constexpr std::size_t longest = 200;
    if (const auto end = text.find('\0'); end <= longest) {
        return '"' + std::string(text.substr(0, end)) + "...\" (with the character 0)";
    }
    if (text.size() <= longest) {
        return '"' + std::string(text) + '"';
    }
    auto size = longest;
    while ((static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80) { // no character is cut
        --size;
    }
    return '"' + std::string(text.substr(0, size)) + "...\" (" + std::to_string(text.size()) + " bytes)";
}

// What an error says that it found; null stands for a key that is not given.
std::string describe(const json* value) {
    if (value == nullptr) {
        return "nothing";
    }
    switch (value->type()) {
    case json::value_t::object:
        return "an object";
    case json::value_t::array:
        return "a list of " + std::to_string(value->size());
    case json::value_t::string:
        return inQuotes(value->get_ref<const std::string&>());
    case json::value_t::null:
    case json::value_t::boolean:
        return value->dump();
    default:
        return "a number";
    }
}

// What to do about a key that is not known.
std::string adviceFor(std::string_view key, std::initializer_list<std::string_view> known) {
    const auto* nearest = std::min_element(known.begin(), known.end(),
                                           [key](auto a, auto b) { return distance(key, a) < distance(key, b); });
    if (distance(key, *nearest) <= nearest->size() / 3 + 1) {
        return "did you mean " + inQuotes(*nearest) + "?";
    }
    std::string all = "known are";
    for (const auto name : known) {
        all.append(name == *known.begin() ? " " : ", ").append(inQuotes(name));
    }
    return all;
}

} // namespace

TextPlace lineAndColumn(std::string_view text, std::size_t byte) {
    const auto before = text.substr(0, byte);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    return {static_cast<std::size_t>(line), before.size() - (before.rfind('\n') + 1) + 1};
}

json parseJson(std::string_view text) {
    if (const auto byte = text.find('\0'); byte != std::string_view::npos) { // the parser would take it for the end
        throw syntaxError(text, byte, "not valid JSON in UTF-8: the character 0");
    }
    constexpr int deepest = 100;
    std::vector<std::set<std::string>> keys; // of the objects that are open, outermost first
    std::size_t keyCount = 0;
    const auto check = [&](int depth, json::parse_event_t event, const json& parsed) {
        using Event = json::parse_event_t;
        if ((event == Event::object_start || event == Event::array_start) && depth == deepest) {
            throw syntaxError(text, placeOfDepth(text, deepest),
                              "lists and objects lie in each other more than " + std::to_string(deepest) + " deep");
        }
        if (event == Event::object_start) {
            keys.emplace_back();
        } else if (event == Event::object_end) {
            keys.pop_back();
        } else if (event == Event::key) {
            const auto& key = parsed.get_ref<const std::string&>();
            if (!keys.back().insert(key).second) {
                throw syntaxError(text, placeOfKey(text, keyCount), "key " + inQuotes(key) + " is given twice");
            }
            ++keyCount;
        }
        return true;
    };
    try {
        return json::parse(text, check);
    } catch (const json::parse_error& error) {
        // `byte` counts the bytes read, the one that is wrong included; at the end of the text it is one beyond.
        throw syntaxError(text, error.byte - 1, "not valid JSON: " + detailOf(error));
    } catch (const json::out_of_range& error) { // its message ends with the number in quotes
        const std::string_view what = error.what();
        const auto begin = what.find('\'') + 1;
        const auto number = what.substr(begin, what.rfind('\'') - begin);
        throw syntaxError(text, placeOfNumber(text, number), "the number is larger than any that can be read");
    }
}

const json* findValue(const json& object, std::string_view key) {
    const auto position = object.find(key);
    return position == object.end() ? nullptr : &*position;
}

std::string elementOf(const std::string& list, std::size_t index) {
    return list + "[" + std::to_string(index) + "]";
}

void failAtKey(const std::string& key, std::string_view expected, const json* found) {
    failAtKey(key, std::string(expected) + ", found " + describe(found));
}

void failAtKey(const std::string& key, std::string_view expected) {
    throw JsonKeyError((key.empty() ? "" : "key " + inQuotes(key) + ": ") + "expected " + std::string(expected), key);
}

void refuseUnknownKeys(const json& object, std::initializer_list<std::string_view> known, std::string_view place) {
    for (const auto& element : object.items()) {
        const auto& key = element.key();
        if (std::find(known.begin(), known.end(), key) == known.end()) {
            const auto whole = std::string(place) + key;
            throw JsonKeyError("unknown key " + inQuotes(whole) + "; " + adviceFor(key, known), whole, true);
        }
    }
}

} // namespace tessgen::standalone
