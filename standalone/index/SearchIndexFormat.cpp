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

constexpr std::size_t sizesSize = 2 * sizeof(std::uint32_t);
constexpr std::size_t summaryHeadSize = 1 + sizeof(FolderStamp) + sizeof(std::uint32_t);

using NameLength = std::uint16_t;
constexpr std::size_t nameOffset = 1 + sizeof(NameLength);

template <typename T>
void appendBytes(std::string& bytes, const T& value) {
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void appendEntry(std::string& bytes, const FileTree::Entry& entry) {
    bytes += kindLetters[static_cast<std::size_t>(entry.kind)];
    appendBytes(bytes, static_cast<NameLength>(entry.name.size())); // no name on a disk is longer
    bytes += entry.name;
}

} // namespace

Fingerprint::Fingerprint(std::string_view name) {
    const auto hash = hashOf(name.substr(0, name.find('.')));
    first = static_cast<char>(hash >> 32U);
    second = static_cast<char>(hash >> 40U);
}

EncodedFolder encodeFolder(const FolderStamp& stamp, bool isWorldReadable,
                           const std::vector<FileTree::Entry>& entries) {
    EncodedFolder folder{std::string(1, isWorldReadable ? worldReadable : restricted), {}, {}};
    appendBytes(folder.summary, stamp);
    appendNumber(folder.summary, static_cast<std::uint32_t>(entries.size()));
    std::string secondFingerprints;
    const auto add = [&](const FileTree::Entry& entry, std::string& list) {
        const Fingerprint fingerprint(entry.name);
        folder.summary += fingerprint.first;
        secondFingerprints += fingerprint.second;
        appendEntry(list, entry);
    };
    for (const auto& entry : entries) {
        if (isPackageClassOrPrivate(entry.name)) {
            add(entry, folder.specialFolders);
        }
    }
    for (const auto& entry : entries) {
        if (!isPackageClassOrPrivate(entry.name)) {
            add(entry, folder.others);
        }
    }
    folder.summary += secondFingerprints;
    return folder;
}

std::string encodeValue(const EncodedFolder& folder, std::string_view below) {
    std::string value;
    appendNumber(value, static_cast<std::uint32_t>(folder.specialFolders.size()));
    appendNumber(value, static_cast<std::uint32_t>(below.size()));
    value.append(folder.summary).append(folder.specialFolders).append(below);
    appendBytes(value, hashOf(value));
    return value += folder.others;
}

bool FolderSummary::mayContain(const Fingerprint& symbol) const {
    const auto firsts = fingerprints.substr(0, fingerprints.size() / 2);
    auto place = firsts.find(symbol.first);
    while (place != std::string_view::npos && fingerprints[firsts.size() + place] != symbol.second) {
        place = firsts.find(symbol.first, place + 1);
    }
    return place != std::string_view::npos;
}

std::optional<IndexedFolder> decodeFolder(std::string_view value) {
    if (value.size() < sizesSize) {
        return std::nullopt;
    }
    const std::size_t specialSize = numberFrom(value);
    const std::size_t belowSize = numberFrom(value.substr(sizesSize / 2));
    auto rest = value.substr(sizesSize);
    const auto summary = takeSummary(rest);
    if (!summary || !summary->isRecorded) {
        return std::nullopt;
    }
    std::uint64_t hash = 0;
    if (rest.size() < specialSize + belowSize + sizeof hash) {
        return std::nullopt;
    }
    const auto hashed = value.size() - rest.size() + specialSize + belowSize;
    std::memcpy(&hash, value.data() + hashed, sizeof hash);
    if (hash != hashOf(value.substr(0, hashed))) {
        return std::nullopt;
    }
    return IndexedFolder{*summary, rest.substr(0, specialSize), rest.substr(specialSize, belowSize),
                         value.substr(hashed + sizeof hash)};
}

std::optional<IndexedEntry> takeEntry(std::string_view& bytes) {
    NameLength length = 0;
    if (bytes.size() > nameOffset) {
        std::memcpy(&length, bytes.data() + 1, sizeof length);
    }
    const auto kind = bytes.empty() ? std::string_view::npos : kindLetters.find(bytes.front());
    if (length == 0 || bytes.size() - nameOffset < length || kind == std::string_view::npos) {
        return std::nullopt;
    }
    const auto name = bytes.substr(nameOffset, length);
    bytes.remove_prefix(nameOffset + length);
    return IndexedEntry{name, static_cast<FileTree::Kind>(kind)};
}

std::optional<FolderSummary> takeSummary(std::string_view& bytes) {
    FolderSummary summary;
    if (bytes.starts_with(noSummary)) {
        bytes.remove_prefix(noSummary.size());
        return summary;
    }
    if (bytes.size() < summaryHeadSize || (bytes.front() != worldReadable && bytes.front() != restricted)) {
        return std::nullopt;
    }
    summary.isRecorded = true;
    summary.isWorldReadable = bytes.front() == worldReadable;
    std::memcpy(summary.stamp.data(), bytes.data() + 1, sizeof summary.stamp);
    const auto fingerprintsSize = std::size_t{2} * numberFrom(bytes.substr(summaryHeadSize - sizeof(std::uint32_t)));
    summary.fingerprints = bytes.substr(summaryHeadSize, fingerprintsSize);
    bytes.remove_prefix(summaryHeadSize + summary.fingerprints.size());
    return summary.fingerprints.size() == fingerprintsSize ? std::optional(summary) : std::nullopt;
}

bool decodeEntries(std::string_view entries, const EntryFilter& wanted, std::vector<FileTree::Entry>& found) {
    while (!entries.empty()) {
        const auto entry = takeEntry(entries);
        if (!entry) {
            return false;
        }
        if (wanted.accepts(entry->name)) {
            found.push_back({std::string(entry->name), entry->kind});
        }
    }
    return true;
}

} // namespace tessgen::standalone
