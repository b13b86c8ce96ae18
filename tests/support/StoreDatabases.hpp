// Constant databases for tests, written by the format's own library.
#pragma once

#include "standalone/database/DatabaseFormat.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <cdb.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tessgen::test {

using Entries = std::vector<std::pair<std::string, std::string>>;

inline Entries::value_type withChecksum(const std::string& key, const std::string& value) {
    return {key, value + standalone::encodeNumber(standalone::checksumOf(key + value))};
}

// A constant database of these entries, in their order.
inline std::string writeDatabase(const TemporaryFolder& folder, const Entries& entries) {
    std::string file = folder.write("crafted.cdb");
    const int descriptor = open(file.c_str(), O_RDWR | O_CLOEXEC);
    struct cdb_make make {};
    bool written = cdb_make_start(&make, descriptor) == 0;
    for (const auto& [key, value] : entries) {
        written &= cdb_make_add(&make, key.data(), static_cast<unsigned>(key.size()), value.data(),
                                static_cast<unsigned>(value.size()))
                   == 0;
    }
    written &= cdb_make_finish(&make) == 0;
    close(descriptor);
    EXPECT_TRUE(written);
    return file;
}

} // namespace tessgen::test
