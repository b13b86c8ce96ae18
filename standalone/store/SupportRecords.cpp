#include "standalone/store/SupportRecords.hpp"

#include "host/Paths.hpp"
#include "standalone/json/JsonInput.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <utility>

namespace tessgen::standalone {

namespace {

using nlohmann::json;

std::u16string textOf(const json& value, const ValuePlace& place) {
    const auto* const text = value.get_ptr<const std::string*>();
    const auto units = text == nullptr ? std::nullopt : toUTF16(*text);
    if (!units || units->empty()) {
        failAtKey(place.spelled(), "a text that is not empty", &value);
    }
    return *units;
}

std::vector<std::u16string> textsOf(const json& value, const std::string& key) {
    std::vector<std::u16string> texts;
    texts.reserve(value.size());
    for (const auto& element : value) {
        texts.push_back(textOf(element, {key, texts.size()}));
    }
    return texts;
}

bool readFlag(const json& record, const std::string& key) {
    const auto* const value = findValue(record, key);
    if (value != nullptr && !value->is_boolean()) {
        failAtKey(key, "true or false", value);
    }
    return value != nullptr && value->get<bool>();
}

std::array<bool, 6> readSupportFlags(const json& record) {
    std::array<bool, 6> flags{};
    if (const auto* const value = findValue(record, "supportFlags")) {
        if (!value->is_array() || value->size() != flags.size()) {
            failAtKey("supportFlags", "a list of exactly six of true and false", value);
        }
        for (std::size_t i = 0; i < flags.size(); ++i) {
            const auto& flag = (*value)[i];
            if (!flag.is_boolean()) {
                failAtKey(ValuePlace{"supportFlags", i}.spelled(), "true or false", &flag);
            }
            flags.at(i) = flag.get<bool>();
        }
    }
    return flags;
}

std::u16string readPath(const json& record, bool isBuiltin, std::string_view root) {
    const auto* const value = findValue(record, "path");
    if (value == nullptr) {
        failAtKey("path", "the path of a file, or the text of a built-in", value);
    }
    auto path = textOf(*value, {"path"});
    if (isBuiltin) {
        return path;
    }
    if (path.find(u'\0') != std::u16string::npos) {
        failAtKey("path", "the path of a file, in which there is no character 0", value);
    }
    return toUTF16(absolutePath(value->get_ref<const std::string&>(), root)).value();
}

std::u16string defaultName(const std::u16string& path, bool isBuiltin) {
    return isBuiltin ? path : kelwhich::qualifiedNameForPath(path);
}

std::vector<std::u16string> readNames(const json& record, const std::u16string& path, bool isBuiltin) {
    const auto* const value = findValue(record, "name");
    if (value == nullptr) {
        auto name = defaultName(path, isBuiltin);
        if (name.empty()) {
            failAtKey("name", "a name to find the record by, since its path defines none", value);
        }
        return {std::move(name)};
    }
    if (value->is_string()) {
        return {textOf(*value, {"name"})};
    }
    if (!value->is_array() || value->empty()) {
        failAtKey("name", "a text or a list of texts", value);
    }
    auto names = textsOf(*value, "name");
    auto sorted = names;
    std::sort(sorted.begin(), sorted.end());
    if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) {
        failAtKey("name", "no name twice");
    }
    return names;
}

std::u16string readSymbol(const json& record, bool isRedirect, const std::u16string& firstName) {
    const auto* const value = findValue(record, "symbol");
    if (value == nullptr && isRedirect) {
        failAtKey("symbol", "the name that the redirect leads to", value);
    }
    return value == nullptr ? firstName : textOf(*value, {"symbol"});
}

std::vector<std::u16string> readUnsupportedSymbols(const json& record) {
    const auto* const value = findValue(record, "unsupportedSymbols");
    if (value != nullptr && !value->is_array()) {
        failAtKey("unsupportedSymbols", "a list of texts", value);
    }
    return value == nullptr ? std::vector<std::u16string>() : textsOf(*value, "unsupportedSymbols");
}

std::string inUTF8(const std::u16string& text) {
    auto converted = toUTF8(text);
    if (!converted) {
        throw std::runtime_error("a text is not UTF-16, and cannot be written as JSON");
    }
    return std::move(*converted);
}

std::vector<std::string> inUTF8(const std::vector<std::u16string>& texts) {
    std::vector<std::string> converted;
    converted.reserve(texts.size());
    for (const auto& text : texts) {
        converted.push_back(inUTF8(text));
    }
    return converted;
}

// The shortest path that `readSupportRecord` reads as `path`.
std::string pathFrom(std::string_view root, std::string path) {
    const auto folder = joinPath(root, "");
    if (path.starts_with(folder) && absolutePath(path.substr(folder.size()), root) == path) {
        path.erase(0, folder.size());
    }
    return path;
}

} // namespace

SupportRecord readSupportRecord(std::string_view line, std::string_view root) {
    const auto json = parseJson(line);
    if (!json.is_object()) {
        throw std::runtime_error(R"(expected a record, such as {"path": "library/wave.vk"})");
    }
    refuseUnknownKeys(json, {"path", "name", "builtin", "redirect", "symbol", "supportFlags", "unsupportedSymbols"});
    SupportRecord record;
    auto& entry = record.entry;
    entry.isBuiltin = readFlag(json, "builtin");
    entry.isRedirect = readFlag(json, "redirect");
    entry.supportFlags = readSupportFlags(json);
    entry.path = readPath(json, entry.isBuiltin, root);
    record.names = readNames(json, entry.path, entry.isBuiltin);
    entry.symbol = readSymbol(json, entry.isRedirect, record.names.front());
    entry.unsupportedSymbols = readUnsupportedSymbols(json);
    return record;
}

std::string writeSupportRecord(const SupportRecord& record, std::string_view root) {
    const auto& [entry, names] = record;
    auto path = inUTF8(entry.path);
    nlohmann::ordered_json line;
    line["path"] = entry.isBuiltin ? std::move(path) : pathFrom(root, std::move(path));
    if (names.size() > 1) {
        line["name"] = inUTF8(names);
    } else if (names.front() != defaultName(entry.path, entry.isBuiltin)) {
        line["name"] = inUTF8(names.front());
    }
    if (entry.isBuiltin) {
        line["builtin"] = true;
    }
    if (entry.isRedirect) {
        line["redirect"] = true;
    }
    if (entry.isRedirect || entry.symbol != names.front()) {
        line["symbol"] = inUTF8(entry.symbol);
    }
    if (entry.supportFlags != std::array<bool, 6>{}) {
        line["supportFlags"] = entry.supportFlags;
    }
    if (!entry.unsupportedSymbols.empty()) {
        line["unsupportedSymbols"] = inUTF8(entry.unsupportedSymbols);
    }
    return line.dump();
}

} // namespace tessgen::standalone
