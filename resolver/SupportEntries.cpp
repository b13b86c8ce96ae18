#include "host/Paths.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace tessgen::kelwhich {

KELWhichResolver::KELWhichResolver(std::unique_ptr<WhichResolver> which, std::unique_ptr<MetadataResolver> metadata,
                                   std::unique_ptr<FileSystem> fileSystem) noexcept
    : which_(std::move(which)), metadata_(std::move(metadata)), fileSystem_(std::move(fileSystem)) {}

KELWhichResolver::~KELWhichResolver() = default;

namespace {

// The file of the support packages that stands in for the record's file, if there is one; else the record's path.
std::u16string pathInPackages(const SupportEntry& entry, const FileSystem& fileSystem) {
    if (entry.isBuiltin || !containsSeparator(entry.path)) {
        return entry.path;
    }
    const auto packages = fileSystem.spkgroot();
    if (!packages) {
        return entry.path;
    }
    auto standIn = replacePrefix(entry.path, fileSystem.orvakroot(), *packages);
    return fileSystem.exists(standIn) ? standIn : entry.path;
}

} // namespace

KELWhichResolver::BasicSupportEntry
KELWhichResolver::entryToBasicEntry(std::shared_ptr<const SupportEntry> entry) const {
    const auto& flags = entry->supportFlags;
    const bool supported = std::any_of(flags.begin(), flags.end(), std::identity());
    auto path = pathInPackages(*entry, *fileSystem_);
    auto symbol = entry->symbol;
    return {std::move(path), std::move(symbol), supported, entry->isBuiltin, entry->isRedirect, std::move(entry)};
}

WhichResultType KELWhichResolver::typeOf(const BasicSupportEntry& entry) const {
    if (entry.builtin) {
        return WhichResultType::KELBuiltin;
    }
    return fileSystem_->isOnKELPath(entry.path) ? WhichResultType::KELPath : WhichResultType::ORVAKPath;
}

WhichResult KELWhichResolver::entryToWhichResult(const BasicSupportEntry& entry) const {
    return {entry.path, typeOf(entry)};
}

} // namespace tessgen::kelwhich
