#include "cli/output/Findings.hpp"

#include "cli/output/Escape.hpp"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>

namespace tessgen::cli {

nlohmann::ordered_json document(const analysis::Finding& finding) {
    nlohmann::ordered_json result{
        {"code", finding.code}, {"level", levelName(finding.level)}, {"path", inUTF8(finding.path)}};
    if (!finding.other.empty()) {
        result["with"] = inUTF8(finding.other);
    }
    if (finding.key) {
        result["key"] = keyName(*finding.key);
    }
    result["message"] = inUTF8(finding.message);
    result["advice"] = finding.advice;
    return result;
}

std::string_view keyName(kelwhich::Explanation::Key key) {
    constexpr std::array<std::string_view, kelwhich::Explanation::keys.size()> names = {
        "direct", "user", "supported", "sourceFile", "kind", "gathered"};
    return names.at(static_cast<std::size_t>(key));
}

} // namespace tessgen::cli
