#include "standalone/index/SearchIndexFormat.hpp"

#include "standalone/text/Hash.hpp"
#include "standalone/text/PathText.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tessgen::standalone {

namespace {

constexpr std::string_view kindLetters = "fdlo"; // in the order of FileTree::Kind
constexpr char worldReadable = 'a';
constexpr char restricted = 's'; // to be checked for each user

constexpr std::size_t headSize = 1 + 2 * sizeof(std::uint32_t);

using NameLength = std::uint16_t;
constexpr std::size_t nameOffset = 1 + sizeof(NameLength);

// A file has the fingerprint of its symbol, which is its name up to the first dot.
struct Fingerprint {
    explicit Fingerprint(std::string_view name) {
        const auto hash = hashOf(name.substr(0, name.find('.')));
        first = static_cast<char>(hash >> 32U);
        second = static_cast<char>(hash >> 40U);
    }

    char first;
    char second;
};

void appendEntry(std::string& value, const FileTree::Entry& entry) {
    value += kindLetters[static_cast<std::size_t>(entry.kind)];
    const auto length = static_cast<NameLength>(entry.name.size()); // no name on a disk is longer
    value.append(reinterpret_cast<const char*>(&length), sizeof length).append(entry.name);
}

} // namespace

std::string encodeFolder(const FolderStamp& stamp, bool isWorldReadable, const std::vector<FileTree::Entry>& entries) {
    std::string specialFolders;
    std::string firstFingerprints;
    std::string secondFingerprints;
    std::string others;
    for (const auto& entry : entries) {
        if (isPackageClassOrPrivate(entry.name)) {
            appendEntry(specialFolders, entry);
        } else {
            const Fingerprint fingerprint(entry.name);
            firstFingerprints += fingerprint.first;
            secondFingerprints += fingerprint.second;
            appendEntry(others, entry);
        }
    }
    std::string checked(1, isWorldReadable ? worldReadable : restricted);
    appendNumber(checked, static_cast<std::uint32_t>(specialFolders.size()));
    appendNumber(checked, static_cast<std::uint32_t>(firstFingerprints.size()));
    checked.append(specialFolders).append(firstFingerprints).append(secondFingerprints);
    std::string value(reinterpret_cast<const char*>(stamp.data()), sizeof stamp);
    value += checked;
    const std::uint64_t hash = hashOf(checked);
    value.append(reinterpret_cast<const char*>(&hash), sizeof hash);
    return value += others;
}

bool IndexedFolder::mayContain(std::string_view symbol) const {
    const Fingerprint fingerprint(symbol);
    const auto firsts = fingerprints.substr(0, fingerprints.size() / 2);
    auto place = firsts.find(fingerprint.first);
    while (place != std::string_view::npos && fingerprints[firsts.size() + place] != fingerprint.second) {
        place = firsts.find(fingerprint.first, place + 1);
    }
    return place != std::string_view::npos;
}

std::optional<IndexedFolder> decodeFolder(std::string_view value) {
    FolderStamp stamp{};
    std::uint64_t hash = 0;
    if (value.size() < sizeof stamp + headSize + sizeof hash) {
        return std::nullopt;
    }
    std::memcpy(stamp.data(), value.data(), sizeof stamp);
    const auto rest = value.substr(sizeof stamp);
    const std::size_t specialSize = numberFrom(rest.substr(1));
    const std::size_t otherCount = numberFrom(rest.substr(1 + sizeof(std::uint32_t)));
    const auto fingerprintsSize = 2 * otherCount;
    const auto checked = headSize + specialSize + fingerprintsSize;
    if (rest.size() - sizeof hash < checked || (rest.front() != worldReadable && rest.front() != restricted)) {
        return std::nullopt;
    }
    std::memcpy(&hash, rest.data() + checked, sizeof hash);
    if (hash != hashOf(rest.substr(0, checked))) {
        return std::nullopt;
    }
    return IndexedFolder{stamp, rest.front() == worldReadable, rest.substr(headSize, specialSize),
                         rest.substr(headSize + specialSize, fingerprintsSize), rest.substr(checked + sizeof hash)};
}

bool decodeEntries(std::string_view entries, const EntryFilter& wanted, std::vector<FileTree::Entry>& found) {
    for (auto rest = entries; !rest.empty();) {
        NameLength length = 0;
        if (rest.size() > nameOffset) {
            std::memcpy(&length, rest.data() + 1, sizeof length);
        }
        if (length == 0 || rest.size() - nameOffset < length) {
            return false;
        }
        if (const auto name = rest.substr(nameOffset, length); wanted.accepts(name)) {
            const auto kind = kindLetters.find(rest.front());
            if (kind == std::string_view::npos) {
                return false;
            }
            found.push_back({std::string(name), static_cast<FileTree::Kind>(kind)});
        }
        rest.remove_prefix(nameOffset + length);
    }
    return true;
}

} // namespace tessgen::standalone
