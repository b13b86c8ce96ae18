#include "standalone/files/MountPoints.hpp"

#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace tessgen::standalone {

namespace {

// The fifth field of a line.
std::string_view mountPointIn(std::string_view line) {
    constexpr int fieldsBefore = 4;
    for (int field = 0; field < fieldsBefore; ++field) {
        line.remove_prefix(std::min(line.find(' '), line.size() - 1) + 1);
    }
    return line.substr(0, line.find(' '));
}

// The system writes a blank or a backslash as "\" and three octal digits.
std::string unescaped(std::string_view text) {
    constexpr std::size_t digits = 3;
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + digits < text.size()) {
            plain += static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0'));
            i += digits;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

} // namespace

FileNames namesOfMountPoints() {
    try {
        return namesOfMountPoints(Descriptor(open(mountsFile, O_RDONLY | O_CLOEXEC)));
    } catch (const std::system_error&) { // there is no such file, or it breaks off
        return {};
    }
}

FileNames namesOfMountPoints(const Descriptor& mounts) {
    constexpr std::size_t readAtOnce = std::size_t{1} << 14U;
    std::string lines;
    for (ssize_t size = 1; size > 0;) {
        const auto before = lines.size();
        lines.resize(before + readAtOnce);
        size = pread(mounts.get(), lines.data() + before, readAtOnce, static_cast<off_t>(before));
        if (size < 0) {
            throw std::system_error(errno, std::generic_category(), mountsFile);
        }
        lines.resize(before + static_cast<std::size_t>(size));
    }
    FileNames names;
    for (const auto& line : split(lines, '\n')) {
        const auto path = mountPointIn(line);
        names.insert(unescaped(path.substr(path.rfind('/') + 1)));
    }
    return names;
}

void doubtMountPoints(std::vector<FileTree::Entry>& entries, const FileNames& names) {
    if (names.empty()) {
        return;
    }
    for (FileTree::Entry& entry : entries) {
        if (entry.kind != FileTree::Kind::folder && names.contains(entry.name)) {
            entry.kind = FileTree::Kind::link;
        }
    }
}

} // namespace tessgen::standalone
