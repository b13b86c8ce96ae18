#include "cli/commands/Commands.hpp"
#include "cli/installation/ManifestLookup.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "standalone/store/SupportRecords.hpp"
#include "standalone/store/SupportStore.hpp"
#include "standalone/store/SupportStoreFormat.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace tessgen::cli {

int storeInfo(const Request& request) {
    const auto file = findStore(request);
    const standalone::SupportStore store(file);
    std::uint64_t records = 0;
    std::uint64_t names = 0;
    std::uint64_t builtins = 0;
    std::uint64_t redirects = 0;
    store.forEachRecord([&](const standalone::SupportRecord& record) {
        ++records;
        names += record.names.size();
        builtins += record.entry.isBuiltin ? 1 : 0;
        redirects += record.entry.isRedirect ? 1 : 0;
    });
    if (request.json && !standalone::isUTF8(file)) {
        throw std::runtime_error(fmt::format("{}: this path is not UTF-8, and cannot be written as JSON", file));
    }
    const nlohmann::ordered_json document{
        {"schema", "kelwhich/1"},
        {"file", file},
        {"bytes", std::filesystem::file_size(file)},
        {"version", standalone::storeVersion},
        {"root", standalone::toUTF8(store.root()).value()},
        {"records", records},
        {"builtins", builtins},
        {"redirects", redirects},
        {"names", names},
    };
    if (request.json) {
        writeOut(printJSONDocument(document));
        return exitYes;
    }
    std::string text;
    for (const auto& [key, value] : document.items()) {
        if (key != "schema") {
            text += fmt::format("{:9}  {}\n", key,
                                value.is_string() ? escaped(value.get_ref<const std::string&>()) : printJSON(value));
        }
    }
    writeOut(text);
    return exitYes;
}

} // namespace tessgen::cli
