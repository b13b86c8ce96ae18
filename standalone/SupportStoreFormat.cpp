#include "standalone/SupportStoreFormat.hpp"

#include "standalone/Text.hpp"

#include <bit>
#include <cstddef>
#include <cstring>
#include <vector>

namespace tessgen::standalone {

namespace {

static_assert(std::endian::native == std::endian::little, "numbers and texts are copied as they lie in memory");

constexpr std::uint32_t redirectFlag = 1U << 6U; // above the six support flags

void appendNumber(std::string& bytes, std::uint32_t number) {
    const auto at = bytes.size();
    bytes.resize(at + sizeof number);
    std::memcpy(bytes.data() + at, &number, sizeof number);
}

void appendUnits(std::string& bytes, std::u16string_view text) {
    const auto at = bytes.size();
    bytes.resize(at + text.size() * sizeof(char16_t));
    if (!text.empty()) {
        std::memcpy(bytes.data() + at, text.data(), text.size() * sizeof(char16_t));
    }
}

void appendText(std::string& bytes, std::u16string_view text) {
    appendNumber(bytes, static_cast<std::uint32_t>(text.size()));
    appendUnits(bytes, text);
}

void appendTexts(std::string& bytes, const std::vector<std::u16string>& texts) {
    appendNumber(bytes, static_cast<std::uint32_t>(texts.size()));
    for (const auto& text : texts) {
        appendText(bytes, text);
    }
}

// Takes bytes from the front of a value. What is not there is read as zero or empty, and `complete` then says no.
class Decoder {
public:
    explicit Decoder(std::string_view bytes) : bytes_(bytes) {}

    std::uint32_t number() {
        const auto bytes = take(sizeof(std::uint32_t));
        return bytes.empty() ? 0 : numberFrom(bytes);
    }

    std::u16string text() { return units(number()); }

    std::u16string units(std::size_t count) {
        const auto bytes = take(count * sizeof(char16_t));
        std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
        if (!bytes.empty()) {
            std::memcpy(text.data(), bytes.data(), bytes.size());
        }
        return text;
    }

    std::vector<std::u16string> texts() {
        std::vector<std::u16string> texts;
        for (auto count = number(); count != 0 && good_; --count) {
            texts.push_back(text());
        }
        return texts;
    }

    // Everything was there, and nothing is left.
    bool complete() const { return good_ && bytes_.empty(); }

private:
    std::string_view take(std::size_t count) {
        if (count > bytes_.size()) {
            good_ = false;
            bytes_ = {};
            return {};
        }
        const auto taken = bytes_.substr(0, count);
        bytes_.remove_prefix(count);
        return taken;
    }

    std::string_view bytes_;
    bool good_ = true;
};

} // namespace

std::string encodeKey(EntryKind kind, std::u16string_view text) {
    std::string key;
    key.reserve(1 + text.size() * sizeof(char16_t));
    key += static_cast<char>(kind);
    appendUnits(key, text);
    return key;
}

std::string encodeNumber(std::uint32_t number) {
    std::string bytes;
    appendNumber(bytes, number);
    return bytes;
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

std::string encodeInfo(const StoreInfo& info) {
    std::string value;
    appendText(value, info.magic);
    appendNumber(value, info.version);
    appendNumber(value, info.records);
    appendText(value, info.root);
    return value;
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

std::optional<StoreInfo> decodeInfo(std::string_view value) {
    Decoder decoder(value);
    StoreInfo info;
    info.magic = decoder.text();
    info.version = decoder.number();
    if (info.magic != storeMagic) {
        return std::nullopt;
    }
    if (info.version != storeVersion) {
        return info;
    }
    info.records = decoder.number();
    info.root = decoder.text();
    return decoder.complete() && toUTF8(info.root) ? std::optional(std::move(info)) : std::nullopt;
}

} // namespace tessgen::standalone
