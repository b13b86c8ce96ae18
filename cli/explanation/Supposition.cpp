#include "cli/explanation/Supposition.hpp"

#include "tessapp/internal/screener/meta/SupportEntry.hpp"
#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

using Record = std::shared_ptr<const kelwhich::SupportEntry>;

class SupposedWhich final : public kelwhich::WhichResolver {
public:
    SupposedWhich(std::u16string symbol, std::u16string path, std::size_t place)
        : symbol_(std::move(symbol)), path_(std::move(path)), place_(place) {}

    [[nodiscard]] std::vector<kelwhich::WhichResult> which(const std::u16string& name) const override {
        auto results = host_.which(name);
        if (name == symbol_) {
            const auto place = static_cast<std::ptrdiff_t>(std::min(place_, results.size()));
            results.insert(results.begin() + place, {path_, kelwhich::WhichResultType::ORVAKPath});
        }
        return results;
    }

private:
    const kelwhich::ORVAKWhichResolver host_;
    const std::u16string symbol_;
    const std::u16string path_;
    const std::size_t place_;
};

class SupposedMetadata final : public kelwhich::MetadataResolver {
public:
    SupposedMetadata(std::u16string symbol, Record record) : symbol_(std::move(symbol)), record_(std::move(record)) {}

    [[nodiscard]] std::optional<Record> findByPath(const std::u16string& path) const override {
        return path == record_->path ? record_ : metadata_.findByPath(path);
    }

    [[nodiscard]] std::vector<Record> findBySymbol(const std::u16string& symbol) const override {
        auto records = metadata_.findBySymbol(symbol);
        if (symbol == symbol_) {
            records.push_back(record_);
        }
        return records;
    }

private:
    const kelwhich::ScreenerMetadataResolver metadata_;
    const std::u16string symbol_;
    const Record record_;
};

kelwhich::Explanation explain(const std::u16string& name, std::unique_ptr<kelwhich::WhichResolver> which,
                              std::unique_ptr<kelwhich::MetadataResolver> metadata) {
    return kelwhich::KELWhichResolver(
               std::move(which), std::move(metadata),
               std::make_unique<kelwhich::CachedFileSystemAdaptor>(std::make_unique<kelwhich::RealFileSystem>()))
        .explain(name);
}

} // namespace

kelwhich::Explanation supposeFound(const std::u16string& name, const std::u16string& symbol, const std::u16string& path,
                                   std::size_t place) {
    return explain(name, std::make_unique<SupposedWhich>(symbol, path, place),
                   std::make_unique<kelwhich::ScreenerMetadataResolver>());
}

kelwhich::Explanation supposeRecord(const std::u16string& name, const std::u16string& symbol, Record record) {
    return explain(name, std::make_unique<kelwhich::ORVAKWhichResolver>(),
                   std::make_unique<SupposedMetadata>(symbol, std::move(record)));
}

} // namespace tessgen::cli
