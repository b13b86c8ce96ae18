#include "standalone/store/SupportStoreFormat.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tessgen::standalone {

namespace {

constexpr std::uint32_t redirectFlag = 1U << 6U; // above the six support flags

} // namespace

void CommonPrefix::add(std::u16string_view path) {
    if (!text_) {
        text_ = path;
    }
    const auto end = std::mismatch(text_->begin(), text_->end(), path.begin(), path.end()).first;
    text_->erase(end, text_->end());
}

std::string encodeKey(EntryKind kind, std::u16string_view text) {
    std::string key;
    encodeKey(key, kind, text);
    return key;
}

void encodeKey(std::string& key, EntryKind kind, std::u16string_view text) {
    key.assign(1, static_cast<char>(kind));
    appendUnits(key, text);
}

std::string encodeRecord(const SupportRecord& record) {
    const auto& entry = record.entry;
    std::uint32_t flags = entry.isRedirect ? redirectFlag : 0;
    for (std::size_t i = 0; i < entry.supportFlags.size(); ++i) {
        flags |= entry.supportFlags[i] ? 1U << i : 0U;
    }
    std::string value;
    appendNumber(value, flags);
    appendText(value, entry.symbol);
    appendTexts(value, entry.unsupportedSymbols);
    appendTexts(value, record.names);
    return value;
}

std::string encodeReference(const EntryReference& reference) {
    return encodeNumber(reference.position) + encodeNumber(reference.length) + encodeNumber(reference.checksum);
}

bool isRecord(std::string_view key) {
    return key.starts_with(static_cast<char>(EntryKind::file))
           || key.starts_with(static_cast<char>(EntryKind::builtin));
}

std::optional<SupportRecord> decodeRecord(std::string_view key, std::string_view value) {
    if (!isRecord(key)) {
        return std::nullopt;
    }
    SupportRecord record;
    auto& entry = record.entry;
    entry.isBuiltin = key.front() == static_cast<char>(EntryKind::builtin);
    Decoder path(key.substr(1));
    entry.path = path.units((key.size() - 1) / sizeof(char16_t));
    Decoder rest(value);
    const auto flags = rest.number();
    entry.isRedirect = (flags & redirectFlag) != 0;
    for (std::size_t i = 0; i < entry.supportFlags.size(); ++i) {
        entry.supportFlags[i] = (flags & (1U << i)) != 0;
    }
    entry.symbol = rest.text();
    entry.unsupportedSymbols = rest.texts();
    record.names = rest.texts();
    if (!path.complete() || !rest.complete() || flags >= redirectFlag * 2 || record.names.empty()) {
        return std::nullopt;
    }
    return record;
}

std::optional<EntryReference> decodeReference(std::string_view value) {
    Decoder decoder(value);
    EntryReference reference{};
    reference.position = decoder.number();
    reference.length = decoder.number();
    reference.checksum = decoder.number();
    return decoder.complete() ? std::optional(reference) : std::nullopt;
}

} // namespace tessgen::standalone
