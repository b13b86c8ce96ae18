// Constant databases for tests: written by the format's own library, checked in, and damaged.
#pragma once

#include "standalone/database/DatabaseFormat.hpp"
#include "tests/support/SupportStores.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <algorithm>
#include <cdb.h>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
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

// The checked-in file of the present version.
inline std::string goldenFile(const standalone::DatabaseKind& kind) {
    std::string name(kind.name);
    std::replace(name.begin(), name.end(), ' ', '-');
    return KELWHICH_SOURCE_DIR "/tests/standalone/golden/" + name + "-" + std::to_string(kind.version) + ".cdb";
}

// Calls `visit(place, what)` with each byte of the file changed in several ways, and with the file cut to each length;
// then the file is whole again.
template <typename Visit>
void forEachDamage(const std::string& file, const std::vector<int>& bits, Visit visit) {
    const auto whole = contentOf(file);
    std::fstream bytes(file, std::ios::binary | std::ios::in | std::ios::out);
    const auto put = [&bytes](std::size_t at, char byte) {
        bytes.seekp(static_cast<std::streamoff>(at)).put(byte).flush();
    };
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const int changed : bits) {
            put(at, static_cast<char>(whole[at] ^ changed));
            visit(at, "bits " + std::to_string(changed) + " of byte " + std::to_string(at));
        }
        put(at, whole[at]);
    }
    for (auto size = whole.size(); size-- != 0;) {
        std::filesystem::resize_file(file, size);
        visit(0, "cut to " + std::to_string(size));
    }
    std::ofstream(file, std::ios::binary) << whole;
}

} // namespace tessgen::test
