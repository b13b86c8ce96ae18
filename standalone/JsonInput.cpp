#include "standalone/JsonInput.hpp"

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

JsonSyntaxError syntaxError(std::string_view text, const json::parse_error& error) {
    // `byte` counts the bytes read, the one that is wrong included; at the end of the text it is one beyond.
    const auto before = text.substr(0, std::min(error.byte, text.size() + 1) - 1);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const auto column = before.size() - (before.rfind('\n') + 1) + 1;
    return {"not valid JSON: " + detailOf(error), static_cast<std::size_t>(line), column};
}

std::string inQuotes(std::string_view key) {
    return json(key).dump();
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
    case json::value_t::string: {
        constexpr std::size_t longest = 200;
        const auto size = value->get_ref<const std::string&>().size();
        return size <= longest ? value->dump() : "a text of " + std::to_string(size) + " bytes";
    }
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

json parseJson(std::string_view text) {
    std::vector<std::set<std::string>> keys; // of the objects that are open, outermost first
    const auto check = [&keys](int /*depth*/, json::parse_event_t event, const json& parsed) {
        if (event == json::parse_event_t::object_start) {
            keys.emplace_back();
        } else if (event == json::parse_event_t::object_end) {
            keys.pop_back();
        } else if (event == json::parse_event_t::key && !keys.back().insert(parsed.get<std::string>()).second) {
            throw std::runtime_error("key " + parsed.dump() + " is given twice");
        }
        return true;
    };
    try {
        return json::parse(text, check);
    } catch (const json::parse_error& error) {
        throw syntaxError(text, error);
    } catch (const json::out_of_range& error) { // a number that no number type holds
        throw std::runtime_error(std::string("not valid JSON: ") + error.what());
    }
}

const json* findValue(const json& object, std::string_view key) {
    const auto position = object.find(key);
    return position == object.end() ? nullptr : &*position;
}

void failAtKey(std::string_view key, std::string_view expected, const json* found) {
    failAtKey(key, std::string(expected) + ", found " + describe(found));
}

void failAtKey(std::string_view key, std::string_view expected) {
    throw std::runtime_error("key " + inQuotes(key) + ": expected " + std::string(expected));
}

void refuseUnknownKeys(const json& object, std::initializer_list<std::string_view> known, std::string_view place) {
    for (const auto& element : object.items()) {
        const auto& key = element.key();
        if (std::find(known.begin(), known.end(), key) == known.end()) {
            throw std::runtime_error("unknown key " + inQuotes(std::string(place) + key) + "; "
                                     + adviceFor(key, known));
        }
    }
}

} // namespace tessgen::standalone
