// Names by the file names that they may lead to: where to begin when asked which names reach a file.
//
// Threads: const operations may be called concurrently.
#pragma once

#include "standalone/services/SessionState.hpp"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessgen::standalone {

class NamesByFile {
public:
    // Of the session's snapshot if it has one, else as they are now. Errors: std::runtime_error for a damaged store.
    explicit NamesByFile(const SessionState& session);

    // Every plain and dotted name that leads to a file of that name (UTF-8) unless by a redirect, and others; sorted.
    [[nodiscard]] std::vector<std::string> find(std::string_view fileName) const;

    // The plain and dotted names of the records that redirect.
    [[nodiscard]] const std::vector<std::string>& redirecting() const { return redirecting_; }

private:
    void addRecords(const SessionState& session, const SupportStore& store);

    std::unordered_multimap<std::string, std::string> symbols_; // by the start of the file name, up to the first "."
    std::unordered_multimap<std::string, std::string> records_; // by the file name
    std::vector<std::string> redirecting_;
};

} // namespace tessgen::standalone
