#include "standalone/doctor/NamesByFile.hpp"

#include "host/Paths.hpp"
#include "standalone/store/SupportRecords.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <utility>

namespace tessgen::standalone {

NamesByFile::NamesByFile(const SessionState& session) {
    for (auto& symbol : session.symbols()) {
        auto last = symbol.substr(symbol.rfind('.') + 1);
        symbols_.emplace(std::move(last), std::move(symbol));
    }
    if (const auto store = session.supportStore()) {
        addRecords(session, *store);
    }
}

void NamesByFile::addRecords(const SessionState& session, const SupportStore& store) {
    store.forEachRecord([&](const SupportRecord& record) {
        const auto& path = record.entry.path;
        // A file of the support packages may stand in for it, even for one beside the root.
        const auto standIn = kelwhich::replacePrefix(path, session.root, session.supportPackageRoot.value_or(u""));
        const auto file = toUTF8(kelwhich::fileName(path));
        const auto other = toUTF8(kelwhich::fileName(standIn));
        for (const auto& units : record.names) {
            const auto name = toUTF8(units);
            if (!name || name->find('/') != std::string::npos) {
                continue;
            }
            if (file) {
                records_.emplace(*file, *name);
            }
            if (other && other != file) {
                records_.emplace(*other, *name);
            }
            if (record.entry.isRedirect) {
                redirecting_.push_back(*name);
            }
        }
    });
    std::sort(redirecting_.begin(), redirecting_.end());
    redirecting_.erase(std::unique(redirecting_.begin(), redirecting_.end()), redirecting_.end());
}

std::vector<std::string> NamesByFile::find(std::string_view fileName) const {
    std::vector<std::string> names;
    const auto add = [&names](const auto& table, std::string_view key) {
        const auto [begin, end] = table.equal_range(std::string(key));
        std::for_each(begin, end, [&](const auto& entry) { names.push_back(entry.second); });
    };
    add(symbols_, fileName.substr(0, fileName.find('.')));
    add(records_, fileName);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

} // namespace tessgen::standalone
