// The support-metadata service of the screener: finds records by file and by symbol.
//
// Threads: any, at the same time.
// Errors: an unknown file or symbol is an absence; metadata that cannot be read is an exception.
#pragma once

#include "tessapp/internal/screener/meta/SupportEntry.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessapp::internal::screener::meta {

// The one record of the file, or nothing. Built-in records are not found by path.
std::optional<std::shared_ptr<const SupportEntry>> searchByPath(const std::u16string& path);

// Every record under that symbol, in the service's own order.
std::vector<std::shared_ptr<const SupportEntry>> searchBySymbol(const std::u16string& symbol);

} // namespace tessapp::internal::screener::meta
