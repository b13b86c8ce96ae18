#include "cli/output/Findings.hpp"

#include "cli/output/Escape.hpp"

#include <nlohmann/json.hpp>

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

} // namespace tessgen::cli
