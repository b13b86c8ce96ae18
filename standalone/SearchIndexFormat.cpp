#include "standalone/SearchIndexFormat.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tessgen::standalone {

namespace {

constexpr std::string_view kindLetters = "fdlo"; // in the order of FileTree::Kind
constexpr char forAll = 'a';
constexpr char forSome = 's'; // each user is to be asked for

using NameLength = std::uint16_t;
constexpr std::size_t nameOffset = 1 + sizeof(NameLength);

} // namespace

std::string encodeFolder(const FolderStatus& status, const std::vector<FileTree::Entry>& entries) {
    const auto stamp = stampOf(status.inode);
    std::string value(sizeof stamp, '\0');
    std::memcpy(value.data(), stamp.data(), sizeof stamp);
    value += isForAll(status) ? forAll : forSome;
    for (const auto& entry : entries) {
        value += kindLetters[static_cast<std::size_t>(entry.kind)];
        const auto length = static_cast<NameLength>(entry.name.size()); // the system tells no longer ones
        value.append(reinterpret_cast<const char*>(&length), sizeof length).append(entry.name);
    }
    return value;
}

std::optional<IndexedFolder> decodeFolder(std::string_view value) {
    FolderStamp stamp{};
    if (value.size() <= sizeof stamp || (value[sizeof stamp] != forAll && value[sizeof stamp] != forSome)) {
        return std::nullopt;
    }
    std::memcpy(stamp.data(), value.data(), sizeof stamp);
    return IndexedFolder{stamp, value[sizeof stamp] == forAll, value.substr(sizeof stamp + 1)};
}

std::optional<std::vector<FileTree::Entry>> decodeEntries(std::string_view entries, const FileTree::Filter& wanted) {
    std::vector<FileTree::Entry> found;
    for (auto rest = entries; !rest.empty();) {
        NameLength length = 0;
        if (rest.size() > nameOffset) {
            std::memcpy(&length, rest.data() + 1, sizeof length);
        }
        if (length == 0 || rest.size() - nameOffset < length) {
            return std::nullopt;
        }
        if (const auto name = rest.substr(nameOffset, length); wanted(name)) {
            const auto kind = kindLetters.find(rest.front());
            if (kind == std::string_view::npos) {
                return std::nullopt;
            }
            found.push_back({std::string(name), static_cast<FileTree::Kind>(kind)});
        }
        rest.remove_prefix(nameOffset + length);
    }
    return found;
}

} // namespace tessgen::standalone
