#include "cli/commands/Commands.hpp"
#include "cli/installation/ManifestLookup.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

namespace {

using nlohmann::ordered_json;
using standalone::Builtin;
using standalone::Installation;

struct Source {
    std::string_view name;
    std::string_view words;
};

constexpr Source manifestKey{"manifest", "key of the manifest"};
constexpr Source defaultValue{"default", "default"};
// In the order of ManifestSource.
constexpr std::array manifestSources{
    Source{"option", "--installation"},
    Source{"environment", "environment variable KELWHICH_INSTALLATION"},
    Source{"nearest", "nearest installation.json, from the working folder upwards"},
};

struct Setting {
    std::string key;
    Source source;
    ordered_json value; // a string, null, or a list of strings or of built-ins
};

ordered_json valueOf(const std::optional<std::string>& text) {
    return text ? ordered_json(*text) : ordered_json();
}

ordered_json valueOf(const Builtin& builtin) {
    ordered_json value{{"name", standalone::toUTF8(builtin.name).value()}};
    if (!builtin.className.empty()) {
        value["class"] = standalone::toUTF8(builtin.className).value();
        value["constructor"] = builtin.constructor;
    }
    return value;
}

std::vector<Setting> settingsOf(const Installation& installation, ManifestSource source) {
    auto builtins = ordered_json::array();
    for (const auto& builtin : installation.builtins) {
        builtins.push_back(valueOf(builtin));
    }
    const auto& given = installation.given;
    const auto setting = [&given](const std::string& key, ordered_json value) {
        const bool isGiven = std::find(given.begin(), given.end(), key) != given.end();
        return Setting{key, isGiven ? manifestKey : defaultValue, std::move(value)};
    };
    return {
        {"manifest", manifestSources.at(static_cast<std::size_t>(source)), installation.manifest},
        setting("root", installation.root),
        setting("supportPackageRoot", valueOf(installation.supportPackageRoot)),
        setting("supportStore", valueOf(installation.supportStore)),
        setting("searchIndex", valueOf(installation.searchIndex)),
        setting("searchPath", installation.searchPath),
        setting("kelPath", installation.kelPath),
        setting("sourceCode", standalone::sourceCodePaths(installation)),
        setting("extensions", installation.extensions),
        setting("builtins", std::move(builtins)),
    };
}

std::string asLine(const ordered_json& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    const auto name = value.at("name").get<std::string>();
    return !value.contains("class")
               ? name
               : fmt::format("{} ({} of {})", name, value.at("constructor").get<bool>() ? "constructor" : "method",
                             value.at("class").get<std::string>());
}

std::string asText(const std::vector<Setting>& settings) {
    const auto style = outputStyle(outputIsColoured());
    std::string text;
    for (const auto& [key, source, value] : settings) {
        text += fmt::format("{}{:20}{}{}\n", style.name, key, style.end, source.words);
        for (const auto& element : value.is_array() ? value : ordered_json::array({value})) {
            text += fmt::format("  {}\n", element.is_null() ? "(not set)" : escaped(asLine(element)));
        }
        if (value.is_array() && value.empty()) {
            text += "  (empty list)\n"; // cannot be taken for a name, which is one word
        }
    }
    return text;
}

std::string asJSON(const std::vector<Setting>& settings) {
    ordered_json document{{"schema", "kelwhich/1"}, {"settings", ordered_json::object()}};
    for (const auto& [key, source, value] : settings) {
        document["settings"][key] = {{"source", source.name}, {"value", value}};
    }
    return printJSONDocument(document);
}

} // namespace

int config(const Request& request) {
    const auto found = findManifestAndSource(request);
    const auto settings = settingsOf(standalone::readInstallation(found.path), found.source);
    writeOut(request.json ? asJSON(settings) : asText(settings));
    return exitYes;
}

} // namespace tessgen::cli
