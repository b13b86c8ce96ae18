#include "standalone/SearchIndexFormat.hpp"

#include "standalone/Checksum.hpp"
#include "standalone/SearchForms.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tessgen::standalone {

namespace {

constexpr std::string_view kindLetters = "fdlo"; // in the order of FileTree::Kind
constexpr char forAll = 'a';
constexpr char forSome = 's'; // each user is to be asked for

constexpr std::size_t headSize = 1 + 2 * sizeof(std::uint32_t);

using NameLength = std::uint16_t;
constexpr std::size_t nameOffset = 1 + sizeof(NameLength);

// The mark of a file's name is that of the symbol which it may be of.
char markOf(std::string_view name) {
    return static_cast<char>(checksumOf(name.substr(0, name.find('.'))));
}

void appendEntry(std::string& value, const FileTree::Entry& entry) {
    value += kindLetters[static_cast<std::size_t>(entry.kind)];
    const auto length = static_cast<NameLength>(entry.name.size()); // the system tells no longer ones
    value.append(reinterpret_cast<const char*>(&length), sizeof length).append(entry.name);
}

} // namespace

std::string encodeFolder(const FolderStamp& stamp, bool isForAll, const std::vector<FileTree::Entry>& entries) {
    std::string forms;
    std::string marks;
    std::string others;
    for (const auto& entry : entries) {
        if (isPackageClassOrPrivate(entry.name)) {
            appendEntry(forms, entry);
        } else {
            marks += markOf(entry.name);
            appendEntry(others, entry);
        }
    }
    std::string checked(1, isForAll ? forAll : forSome);
    appendNumber(checked, static_cast<std::uint32_t>(forms.size()));
    appendNumber(checked, static_cast<std::uint32_t>(marks.size()));
    checked.append(forms).append(marks);
    std::string value(reinterpret_cast<const char*>(stamp.data()), sizeof stamp);
    value += checked;
    appendNumber(value, checksumOf(checked));
    return value += others;
}

bool IndexedFolder::mayHold(std::string_view symbol) const {
    return marks.find(markOf(symbol)) != std::string_view::npos;
}

std::optional<IndexedFolder> decodeFolder(std::string_view value) {
    FolderStamp stamp{};
    if (value.size() < sizeof stamp + headSize + checksumSize) {
        return std::nullopt;
    }
    std::memcpy(stamp.data(), value.data(), sizeof stamp);
    const auto rest = value.substr(sizeof stamp);
    const std::size_t formsSize = numberFrom(rest.substr(1));
    const std::size_t otherCount = numberFrom(rest.substr(1 + sizeof(std::uint32_t)));
    const auto checked = headSize + formsSize + otherCount;
    if (rest.size() - checksumSize < checked || (rest.front() != forAll && rest.front() != forSome)
        || checksumOf(rest.substr(0, checked)) != numberFrom(rest.substr(checked))) {
        return std::nullopt;
    }
    return IndexedFolder{stamp, rest.front() == forAll, rest.substr(headSize, formsSize),
                         rest.substr(headSize + formsSize, otherCount), rest.substr(checked + checksumSize)};
}

bool decodeEntries(std::string_view entries, const FileTree::Filter& wanted, std::vector<FileTree::Entry>& found) {
    for (auto rest = entries; !rest.empty();) {
        NameLength length = 0;
        if (rest.size() > nameOffset) {
            std::memcpy(&length, rest.data() + 1, sizeof length);
        }
        if (length == 0 || rest.size() - nameOffset < length) {
            return false;
        }
        if (const auto name = rest.substr(nameOffset, length); wanted(name)) {
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
