#include "standalone/database/DatabaseFormat.hpp"

#include "standalone/text/Text.hpp"

#include <bit>
#include <cstring>
#include <utility>

namespace tessgen::standalone {

static_assert(std::endian::native == std::endian::little, "numbers and texts are copied as they lie in memory");

std::string encodeNumber(std::uint32_t number) {
    std::string bytes;
    appendNumber(bytes, number);
    return bytes;
}

std::string encodeInfo(const DatabaseInfo& info) {
    std::string value;
    appendText(value, info.magic);
    appendNumber(value, info.version);
    appendNumber(value, info.records);
    appendText(value, info.root);
    if (info.commonPrefix) {
        appendText(value, *info.commonPrefix);
    }
    return value;
}

std::optional<DatabaseInfo> decodeInfo(const DatabaseKind& kind, std::string_view value) {
    Decoder decoder(value);
    DatabaseInfo info;
    info.magic = decoder.text();
    info.version = decoder.number();
    if (info.magic != kind.magic) {
        return std::nullopt;
    }
    if (info.version != kind.version) {
        return info;
    }
    info.records = decoder.number();
    info.root = decoder.text();
    if (kind.hasCommonPrefix) {
        info.commonPrefix = decoder.text();
    }
    return decoder.complete() && toUTF8(info.root) ? std::optional(std::move(info)) : std::nullopt;
}

void appendNumber(std::string& bytes, std::uint32_t number) {
    const auto at = bytes.size();
    bytes.resize(at + sizeof number);
    std::memcpy(bytes.data() + at, &number, sizeof number);
}

void appendUnits(std::string& bytes, std::u16string_view text) {
    bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
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

std::uint32_t Decoder::number() {
    const auto bytes = take(sizeof(std::uint32_t));
    return bytes.empty() ? 0 : numberFrom(bytes);
}

std::u16string Decoder::units(std::size_t count) {
    const auto bytes = take(count * sizeof(char16_t));
    std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
    if (!bytes.empty()) {
        std::memcpy(text.data(), bytes.data(), bytes.size());
    }
    return text;
}

std::vector<std::u16string> Decoder::texts() {
    std::vector<std::u16string> texts;
    for (auto count = number(); count != 0 && good_; --count) {
        texts.push_back(text());
    }
    return texts;
}

std::string_view Decoder::take(std::size_t count) {
    if (count > bytes_.size()) {
        good_ = false;
        bytes_ = {};
        return {};
    }
    const auto taken = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    return taken;
}

} // namespace tessgen::standalone
