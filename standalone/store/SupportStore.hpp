// The support store: the records of the code generator's support metadata in one constant database file.
//
// The file is mapped and never written; nothing is parsed when it is opened. Texts are UTF-16 code units.
// Threads: look-ups from any thread, at the same time.
// Lifetime: a record handed out owns its texts and outlives the store.
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

    // Opens the store that was built for an installation with that root (UTF-8).
    // Errors: no such file, not a regular file, not a store, another version, another root, cut short. What is damaged
    // inside is an error of the look-ups that come upon it: a record is never altered, but damaged keys and hash tables
    // may hide one.
    SupportStore(const std::string& file, std::string_view root);
    // Opens a store whatever root it was built for.
    explicit SupportStore(const std::string& file);
    SupportStore(SupportStore&&) noexcept;
    SupportStore& operator=(SupportStore&&) noexcept;
    ~SupportStore();

    // The root that it was built for; it has no lone surrogate.
    const std::u16string& root() const;
    // The record of one file, or nothing; built-in records are not found by path.
    // Errors: a damaged record.
    std::optional<Record> findByPath(std::u16string_view path) const;
    // The records of a name, in the order of their lines when the store was built.
    // Errors: a damaged record.
    std::vector<Record> findBySymbol(std::u16string_view symbol) const;
    // Hands out every record, in the order of their lines when the store was built.
    // Errors: a damaged record or entry, after the records before it; fewer or more records than were written, at the
    // end.
    void forEachRecord(const std::function<void(const SupportRecord&)>& visit) const;

private:
    std::unique_ptr<const DatabaseFile> file_;
};

} // namespace tessgen::standalone
