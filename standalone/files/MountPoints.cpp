#include "standalone/files/MountPoints.hpp"

#include "standalone/files/LineReader.hpp"

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string_view>

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

std::set<std::string> namesOfMountPoints() {
    std::set<std::string> names;
    try {
        LineReader lines("/proc/self/mountinfo");
        while (const auto line = lines.next()) {
            const auto path = mountPointIn(*line);
            names.insert(unescaped(path.substr(path.rfind('/') + 1)));
        }
    } catch (const std::runtime_error&) { // NOLINT(bugprone-empty-catch): there is no such file, or it breaks off
    }
    return names;
}

void doubtMountPoints(std::vector<FileTree::Entry>& entries, const std::set<std::string>& names) {
    for (FileTree::Entry& entry : entries) {
        if (entry.kind != FileTree::Kind::folder && names.contains(entry.name)) {
            entry.kind = FileTree::Kind::link;
        }
    }
}

} // namespace tessgen::standalone
