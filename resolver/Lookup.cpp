#include "host/Paths.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

std::optional<KELWhichResolver::BasicSupportEntry> KELWhichResolver::findByPath(const std::u16string& path) const {
    const auto packages = fileSystem_->spkgroot();
    auto record = packages ? metadata_->findByPath(replacePrefix(path, *packages, fileSystem_->orvakroot()))
                           : metadata_->findByPath(path);
    if (!record) {
        return std::nullopt;
    }
    return entryToBasicEntry(std::move(*record));
}

std::vector<KELWhichResolver::BasicSupportEntry> KELWhichResolver::findBySymbol(const std::u16string& symbol) const {
    auto records = metadata_->findBySymbol(symbol);
    std::vector<BasicSupportEntry> entries;
    entries.reserve(records.size());
    for (auto& record : records) {
        entries.push_back(entryToBasicEntry(std::move(record)));
    }
    return entries;
}

std::vector<KELWhichResolver::BasicSupportEntry> KELWhichResolver::findSupportEntry(const std::u16string& name) const {
    if (fileSystem_->exists(name)) {
        std::vector<BasicSupportEntry> entries;
        if (auto entry = findByPath(name)) {
            entries.push_back(std::move(*entry));
        }
        return entries;
    }
    if (!containsSeparator(name)) {
        return findBySymbol(name);
    }
    auto candidates = findBySymbol(qualifiedNameForPath(name));
    std::erase_if(candidates, [&](const BasicSupportEntry& candidate) {
        return candidate.path.find(name) == std::u16string::npos;
    });
    return candidates;
}

} // namespace tessgen::kelwhich
