#include "standalone/files/FileKind.hpp"

#include "standalone/files/Descriptor.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessgen::standalone {

namespace {

// At most 64 KiB, which the entry that describes a database never exceeds, from `position` on; fewer or none when they
// cannot be read.
constexpr std::uint32_t sampleSize = 1U << 16U;
std::string bytesAt(int descriptor, std::uint32_t position) {
    std::string block(sampleSize, '\0');
    const ssize_t count = pread(descriptor, block.data(), block.size(), position);
    block.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return block;
}

bool holds(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

// The entry that describes a database ends where the hash tables begin, which is its first number. Its magic text is
// "kelwhich " and the kind, in UTF-16.
std::string kindOfDatabase(int descriptor, std::string_view begin) {
    std::uint32_t end = 0;
    std::memcpy(&end, begin.data(), std::min(sizeof end, begin.size()));
    auto text = bytesAt(descriptor, end - std::min(end, sampleSize));
    text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());
    return holds(text, "kelwhich support store")  ? "a support store"
           : holds(text, "kelwhich search index") ? "a search index"
                                                  : "";
}

} // namespace

std::string kindOfFile(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return "";
    }
    const auto begin = bytesAt(file.get(), 0);
    if (!begin.starts_with('{')) {
        return kindOfDatabase(file.get(), begin);
    }
    return holds(begin, "\"kelwhich-recording/")                                ? "a recording"
           : holds(begin, "\"searchPath\"") || holds(begin, "\"supportStore\"") ? "a manifest"
           : begin.starts_with("{\"path\"")                                     ? "support records"
                                                                                : "";
}

std::string noteOnKind(const std::string& path, std::string_view expected) {
    const auto kind = kindOfFile(path);
    return kind.empty() || kind == expected ? "" : "; the file holds " + kind + ", not " + std::string(expected);
}

} // namespace tessgen::standalone
