// The support store: the records of the code generator's support metadata in one constant database file.
//
// The file is mapped read-only; opening parses nothing. Texts are UTF-16 code units.
// Threads: const operations may be called concurrently.
// Lifetime: a returned record owns its texts and may outlive the store.
// Errors: std::runtime_error with one line that names the file and says what to do.
#pragma once

#include "tessapp/internal/screener/meta/SupportEntry.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

class DatabaseFile;
struct SupportRecord;

class SupportStore {
public:
    using Record = std::shared_ptr<const tessapp::internal::screener::meta::SupportEntry>;

    // Opens a store that must have been built for `root` (UTF-8).
    // Errors: no such file, not a regular file, not a store, another version or root, truncated. Damage inside is an
    // error of the look-ups that meet it. It never alters a record, but a damaged key or hash table may hide one.
    SupportStore(const std::string& file, std::string_view root);
    // Opens a store for any root.
    explicit SupportStore(const std::string& file);
    SupportStore(SupportStore&&) noexcept;
    SupportStore& operator=(SupportStore&&) noexcept;
    ~SupportStore();

    // The root that the store was built for, without lone surrogates.
    [[nodiscard]] const std::u16string& root() const;
    // The record of a file, if it has one. Built-in records are not found by path.
    // Errors: a damaged record.
    [[nodiscard]] std::optional<Record> findByPath(std::u16string_view path) const;
    // The records of a name, in the order of the lines that the store was built from.
    // Errors: a damaged record.
    [[nodiscard]] std::vector<Record> findBySymbol(std::u16string_view symbol) const;
    // Passes every record to `visit`, in the order of those lines.
    // Errors: a damaged record or entry, after the records before it; at the end, a wrong number of records.
    void forEachRecord(const std::function<void(const SupportRecord&)>& visit) const;

private:
    std::unique_ptr<const DatabaseFile> file_;
};

} // namespace tessgen::standalone
