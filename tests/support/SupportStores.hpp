// Support stores for tests: built from lines, asked, and their answers shown as texts.
#pragma once

#include "standalone/store/SupportStore.hpp"
#include "standalone/store/SupportStoreBuilder.hpp"
#include "standalone/text/Text.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::test {

inline constexpr const char* storeRoot = "/opt/orvak";

// A record in a line: flags, "B"uiltin, "R"edirect, path, symbol, unsupported symbols.
inline std::string shown(const standalone::SupportStore::Record& record) {
    std::string line;
    for (const bool flag : record->supportFlags) {
        line += flag ? '1' : '0';
    }
    line.append(record->isBuiltin ? "B" : "").append(record->isRedirect ? "R" : "");
    line.append(" ").append(standalone::toUTF8(record->path).value());
    line.append(" ").append(standalone::toUTF8(record->symbol).value());
    for (const auto& name : record->unsupportedSymbols) {
        line.append(" -").append(standalone::toUTF8(name).value());
    }
    return line;
}

using Shown = std::vector<std::string>;

inline Shown bySymbol(const standalone::SupportStore& store, const std::string& name) {
    Shown lines;
    for (const auto& record : store.findBySymbol(standalone::toUTF16(name).value())) {
        lines.push_back(shown(record));
    }
    return lines;
}

// What a runtime_error says that the action throws.
template <typename Action>
std::string errorOf(const Action& action) {
    try {
        static_cast<void>(action());
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

// What a search answers to a name: the places, one a line with its partner; or the error.
template <typename Search>
std::string outcome(Search&& search, const std::string& name) {
    std::string text;
    const auto error = errorOf([&] {
        for (const auto& place : search.find(standalone::toUTF16(name).value())) {
            text += standalone::toUTF8(place.line).value() + "|" + standalone::toUTF8(place.partner).value() + "\n";
        }
    });
    return error == "no error" ? text : "error: " + error;
}

inline std::string openingError(const std::string& file, const std::string& root = storeRoot) {
    return errorOf([&] { const standalone::SupportStore store(file, root); });
}

// When an index is built, as if every change were long past.
inline timespec later() {
    return {std::time(nullptr) + 10, 0};
}

inline std::string contentOf(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// A table of lines "LEFT => RIGHT".
inline std::vector<std::pair<std::string, std::string>> rowsOf(const std::string& table) {
    std::vector<std::pair<std::string, std::string>> rows;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        const auto arrow = line.find(" =>");
        rows.emplace_back(line.substr(0, arrow), line.substr(std::min(arrow + 4, line.size())));
    }
    return rows;
}

// Builds `support.cdb` from `records.jsonl`, both in `folder`. Returns the store's path.
inline std::string buildStore(const TemporaryFolder& folder, const std::string& lines) {
    std::string store = folder.path("support.cdb");
    standalone::buildSupportStore(folder.write("records.jsonl", lines), store, storeRoot);
    return store;
}

// Records of every form; several of the names have more than one.
inline constexpr const char* recordsOfEveryForm =
    R"({"path": "library/wave.vk", "supportFlags": [true,false,true,false,false,true]}
{"path": "sum", "builtin": true, "supportFlags": [true,true,true,true,true,true]}
{"path": "kel/legacy.vk", "redirect": true, "symbol": "modern", "unsupportedSymbols": ["legacy", "old"]}
{"path": "/w/+p/@C/../@D/./area.vk", "name": ["wave", "area", "p.area"]}
{"path": "/w/sum.vk", "symbol": "total", "name": "sum"}
{"path": "a/b", "builtin": true, "redirect": true, "symbol": "wave", "name": ["sum", "wave"]}
{"path": "a/c", "builtin": true, "redirect": false}
{"path": "l\u00e4nge/\ud83d\ude00.vk", "name": "\ud83d\ude00"}
)";

} // namespace tessgen::test
