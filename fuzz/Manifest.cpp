// A manifest of any bytes: an installation, of which `config` shows the settings that make the same one again, or an
// error that names the line and column in the file.
#include "cli/commands/Commands.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "fuzz/Fuzz.hpp"
#include "standalone/manifest/Installation.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace {

using namespace tessgen;
using fuzz::require;
using standalone::Installation;

std::string written; // by the program

std::optional<Installation> read(const std::string& file, std::string_view text) {
    try {
        return standalone::readInstallation(file);
    } catch (const std::runtime_error& error) {
        const std::string_view what = error.what();
        require(fuzz::namesPlace(what, file, 2), "an error names its place", what);
        const auto line = std::stoul(std::string(what.substr(file.size() + 1)));
        require(line <= 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')), "a line is", what);
        require(cli::escaped(what).find('\n') == std::string::npos, "an error is one line", what);
        return std::nullopt;
    }
}

// The manifest that gives every setting that `config` shows.
std::string manifestFromConfig(const std::string& file) {
    cli::Request request;
    request.installation = file;
    request.json = true;
    written.clear();
    require(cli::config(request) == cli::exitYes, "what can be read can be shown");
    nlohmann::json manifest = nlohmann::json::object();
    const auto document = nlohmann::json::parse(written);
    for (const auto& [key, setting] : document.at("settings").items()) {
        if (key != "manifest" && !setting.at("value").is_null()) {
            manifest[key] = setting.at("value");
        }
    }
    return manifest.dump();
}

auto settingsOf(const Installation& all) {
    std::vector<std::tuple<std::u16string, std::u16string, bool>> builtins;
    for (const auto& builtin : all.builtins) {
        builtins.emplace_back(builtin.name, builtin.className, builtin.constructor);
    }
    return std::tuple(all.manifest, all.root, all.supportPackageRoot, all.supportStore, all.searchIndex, all.searchPath,
                      all.kelPath, all.sourceCode, all.extensions, std::move(builtins));
}

} // namespace

// In place of the console, so that nothing else of the program is changed by what it is asked for.
void cli::writeOut(std::string_view text) {
    written += text;
}
void cli::reportErrorInLine(std::string_view /*place*/, std::string_view /*message*/) {}
bool cli::outputIsColoured() {
    return false;
}
std::string cli::environment(const char* /*name*/) {
    return {};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::TemporaryFolder folder;
    const std::string text(fuzz::textOf(data, size));
    const auto file = folder.write("installation.json", text);
    if (const auto installation = read(file, text)) {
        const auto shown = manifestFromConfig(file);
        folder.write("installation.json", shown);
        const auto again = read(file, shown);
        require(again && settingsOf(*again) == settingsOf(*installation), "the settings make the same again", shown);
    }
    return 0;
}
