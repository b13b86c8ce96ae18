#include "cli/output/FileURI.hpp"

#include "standalone/text/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <system_error>

namespace tessgen::cli {

namespace {

constexpr std::string_view fileScheme = "file://";

// The bytes that %XX stand for; nothing when one is no code, or is NUL.
std::optional<std::string> decoded(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const bool isCode = text.front() == '%';
        auto byte = static_cast<unsigned char>(text.front());
        if (isCode) {
            const auto digits = text.substr(1, 2);
            const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
            if (digits.size() < 2 || error != std::errc() || end != digits.data() + digits.size()) {
                return std::nullopt;
            }
        }
        if (byte == 0) {
            return std::nullopt;
        }
        bytes += static_cast<char>(byte);
        text.remove_prefix(isCode ? 3 : 1);
    }
    return bytes;
}

} // namespace

std::string encodedPath(std::string_view path) {
    std::string encoded;
    for (const char c : path) {
        const bool isPlain = ('a' <= c && c <= 'z') || ('A' <= c && c <= 'Z') || ('0' <= c && c <= '9')
                             || std::string_view("-._~/").find(c) != std::string_view::npos;
        encoded += isPlain ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
    return encoded;
}

std::string fileURI(std::string_view path) {
    return std::string(fileScheme) + encodedPath(path);
}

std::optional<std::string> pathOfURI(std::string_view uri) {
    if (standalone::inLowerCase(uri.substr(0, fileScheme.size())) != fileScheme) {
        return std::nullopt;
    }
    uri.remove_prefix(fileScheme.size());
    const auto slash = std::min(uri.find('/'), uri.size());
    const auto host = uri.substr(0, slash);
    if (slash == uri.size() || !(host.empty() || standalone::inLowerCase(host) == "localhost")) {
        return std::nullopt;
    }
    return decoded(uri.substr(slash, uri.find_first_of("?#", slash) - slash));
}

} // namespace tessgen::cli
