// Lines of records of any bytes: the store that is built of them holds what they say and can be written as lines that
// build the very same store; or an error names the line, and nothing is left behind.
#include "cli/output/Escape.hpp"
#include "fuzz/Fuzz.hpp"
#include "standalone/store/SupportRecords.hpp"
#include "standalone/store/SupportStoreCheck.hpp"
#include "tests/support/SupportStores.hpp"

#include <stdexcept>

namespace {

using namespace tessgen;
using fuzz::require;

const test::TemporaryFolder& folder() {
    static const test::TemporaryFolder made;
    return made;
}

// The store's bytes; nothing after an error.
std::string build(const std::string& lines) {
    const auto file = folder().write("records.jsonl", lines);
    const auto store = folder().path("support.cdb");
    std::filesystem::remove(store);
    try {
        standalone::buildSupportStore(file, store, test::storeRoot);
    } catch (const std::runtime_error& error) {
        const std::string_view what = error.what();
        require(fuzz::namesPlace(what, file, 1), "an error names its line", what);
        require(cli::escaped(what).find('\n') == std::string::npos, "an error is one line", what);
        require(std::distance(std::filesystem::directory_iterator(folder().path()), {}) == 1, "nothing is left behind",
                what);
        return {};
    }
    return test::contentOf(store);
}

std::string exported(const standalone::SupportStore& store) {
    std::string lines;
    store.forEachRecord([&](const standalone::SupportRecord& record) {
        const auto line = cli::escapedJSON(standalone::writeSupportRecord(record, test::storeRoot));
        require(line.find('\n') == std::string::npos, "a record is one line", line);
        lines += line + "\n";
        for (const auto& name : record.names) {
            const auto found = store.findBySymbol(name);
            require(std::any_of(found.begin(), found.end(), [&](auto& r) { return r->path == record.entry.path; }),
                    "a name finds its record", line);
        }
    });
    return lines;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto built = build(std::string(fuzz::textOf(data, size)));
    if (!built.empty()) {
        const auto store = folder().path("support.cdb");
        const auto check = standalone::checkSupportStore(store);
        require(check.damages == 0, "what is built is whole", check.damages == 0 ? "" : check.findings.front());
        const auto lines = exported(standalone::SupportStore(store, test::storeRoot));
        require(build(lines) == built, "the lines make the same store", lines);
    }
    return 0;
}
