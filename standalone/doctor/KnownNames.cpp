#include "standalone/doctor/KnownNames.hpp"

#include "standalone/store/SupportRecords.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <utility>

namespace tessgen::standalone {

std::vector<std::string> knownNames(const SessionState& session) {
    auto names = session.symbols();
    std::erase_if(names, [](const std::string& name) { return !isUTF8(name); });
    const auto add = [&names](const std::u16string& units) {
        auto name = toUTF8(units);
        if (name && !name->empty() && name->find('/') == std::string::npos) {
            names.push_back(*std::move(name));
        }
    };
    for (const Builtin& builtin : session.installation.builtins) {
        add(builtin.name);
    }
    if (const auto store = session.supportStore()) {
        store->forEachRecord(
            [&add](const SupportRecord& record) { std::for_each(record.names.begin(), record.names.end(), add); });
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

} // namespace tessgen::standalone
