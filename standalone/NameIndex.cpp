#include "standalone/NameIndex.hpp"

#include "standalone/Text.hpp"

namespace tessgen::standalone {

namespace {

// FNV-1a, 64 bits, folded to 32. Symbols are short, and their two halves need no joining.
std::uint32_t hashOf(std::string_view prefix, std::string_view name) {
    std::uint64_t hash = 14695981039346656037U;
    for (const std::string_view text : {prefix, name}) {
        for (const char c : text) {
            hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
        }
    }
    return static_cast<std::uint32_t>(hash ^ (hash >> 32U));
}

} // namespace

NameIndex::NameIndex(const std::vector<std::string>& extensions) : slots_(1024, none) {
    // Memory that is not written to costs nothing; what grows is written twice.
    constexpr std::size_t usualCount = std::size_t{1} << 16U;
    constexpr std::size_t usualLength = 16;
    symbols_.reserve(usualCount);
    files_.reserve(usualCount);
    texts_.reserve(usualCount * usualLength);
    for (const std::string& extension : extensions) {
        extensions_.push_back(u'.' + toUTF16(extension).value());
    }
}

std::uint32_t NameIndex::addFolder(std::string_view path) {
    folders_.push_back(toUTF16(path).value() + (path.ends_with('/') ? u"" : u"/"));
    return static_cast<std::uint32_t>(folders_.size() - 1);
}

void NameIndex::add(std::string_view prefix, std::string_view name, std::uint32_t folder, std::uint32_t extension) {
    const File file{folder, extension, none};
    const std::uint32_t hash = hashOf(prefix, name);
    std::uint32_t& slot = slots_[slotOf(hash, prefix, name)];
    if (slot != none) {
        Symbol& symbol = symbols_[slot];
        File& last = symbol.last == none ? symbol.first : files_[symbol.last];
        last.next = symbol.last = static_cast<std::uint32_t>(files_.size());
        files_.push_back(file);
        return;
    }
    slot = static_cast<std::uint32_t>(symbols_.size());
    const auto length = static_cast<std::uint32_t>(prefix.size() + name.size()); // of a path, at most
    symbols_.push_back({texts_.size(), length, hash, file, none});
    texts_.append(prefix).append(name);
    if (symbols_.size() * 2 > slots_.size()) {
        grow();
    }
}

std::vector<FoundPlace> NameIndex::find(std::string_view symbol) const {
    std::vector<FoundPlace> places;
    const std::uint32_t number = slots_[slotOf(hashOf({}, symbol), {}, symbol)];
    if (number == none) {
        return places;
    }
    const auto name = toUTF16(symbol.substr(symbol.rfind('.') + 1)).value(); // all of it when there is no dot
    for (const File* file = &symbols_[number].first; file != nullptr;
         file = file->next == none ? nullptr : &files_[file->next]) {
        const std::u16string& folder = folders_[file->folder];
        const std::u16string& extension = extensions_[file->extension];
        std::u16string& path = places.emplace_back().line;
        path.reserve(folder.size() + name.size() + extension.size());
        path.append(folder).append(name).append(extension);
    }
    return places;
}

std::string_view NameIndex::symbolAt(std::size_t index) const {
    return textOf(symbols_.at(index));
}

std::size_t NameIndex::slotOf(std::uint32_t hash, std::string_view prefix, std::string_view name) const {
    const auto isThis = [&](const Symbol& symbol) {
        const std::string_view text = textOf(symbol);
        return symbol.hash == hash && text.size() == prefix.size() + name.size() && text.starts_with(prefix)
               && text.ends_with(name);
    };
    std::size_t slot = hash & (slots_.size() - 1);
    while (slots_[slot] != none && !isThis(symbols_[slots_[slot]])) {
        slot = (slot + 1) & (slots_.size() - 1);
    }
    return slot;
}

void NameIndex::grow() {
    std::vector<std::uint32_t> wider(slots_.size() * 4, none);
    for (std::size_t number = 0; number < symbols_.size(); ++number) {
        std::size_t slot = symbols_[number].hash & (wider.size() - 1);
        while (wider[slot] != none) {
            slot = (slot + 1) & (wider.size() - 1);
        }
        wider[slot] = static_cast<std::uint32_t>(number);
    }
    slots_ = std::move(wider);
}

} // namespace tessgen::standalone
