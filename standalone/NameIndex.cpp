#include "standalone/NameIndex.hpp"

#include "standalone/Text.hpp"

namespace tessgen::standalone {

namespace {

// FNV-1a, 64 bits. Symbols are short, and their two halves need no joining.
std::size_t hashOf(std::string_view text, std::size_t hash = 14695981039346656037U) {
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
    return hash;
}

} // namespace

NameIndex::NameIndex(const std::vector<std::string>& extensions) : slots_(1024, none) {
    for (const std::string& extension : extensions) {
        extensions_.push_back({texts_.size(), extension.size() + 1});
        texts_.append(".").append(extension);
    }
}

std::uint32_t NameIndex::addFolder(std::string_view path) {
    folders_.push_back({texts_.size(), path.size() + (path.ends_with('/') ? 0 : 1)});
    texts_.append(path).append(path.ends_with('/') ? "" : "/");
    return static_cast<std::uint32_t>(folders_.size() - 1);
}

void NameIndex::add(std::string_view prefix, std::string_view name, std::uint32_t folder, std::uint32_t extension) {
    const auto file = static_cast<std::uint32_t>(files_.size());
    files_.push_back({folder, extension, none});
    const std::size_t hash = hashOf(name, hashOf(prefix));
    std::uint32_t& slot = slots_[slotOf(hash, prefix, name)];
    if (slot != none) {
        Symbol& symbol = symbols_[slot];
        files_[symbol.lastFile].next = file;
        symbol.lastFile = file;
        return;
    }
    slot = static_cast<std::uint32_t>(symbols_.size());
    symbols_.push_back({{texts_.size(), prefix.size() + name.size()}, hash, file, file});
    texts_.append(prefix).append(name);
    if (symbols_.size() * 2 > slots_.size()) {
        grow();
    }
}

std::vector<FoundPlace> NameIndex::find(std::string_view symbol) const {
    std::vector<FoundPlace> places;
    const std::uint32_t number = slots_[slotOf(hashOf(symbol), {}, symbol)];
    if (number == none) {
        return places;
    }
    const std::string_view name = symbol.substr(symbol.rfind('.') + 1); // all of it when there is no dot
    std::string path;
    for (std::uint32_t next = symbols_[number].firstFile; next != none; next = files_[next].next) {
        const File& file = files_[next];
        path.assign(textOf(folders_[file.folder])).append(name).append(textOf(extensions_[file.extension]));
        places.push_back({toUTF16(path).value(), {}});
    }
    return places;
}

std::string_view NameIndex::symbolAt(std::size_t index) const {
    return textOf(symbols_.at(index).text);
}

std::size_t NameIndex::slotOf(std::size_t hash, std::string_view prefix, std::string_view name) const {
    const auto isThis = [&](const Symbol& symbol) {
        const std::string_view text = textOf(symbol.text);
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
