#include "cli/lsp/Places.hpp"

#include "analysis/Answer.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/FileURI.hpp"

namespace tessgen::cli {

using nlohmann::ordered_json;

ordered_json rangeOf(const Position& begin, const Position& end) {
    return {{"start", {{"line", begin.line}, {"character", begin.character}}},
            {"end", {{"line", end.line}, {"character", end.character}}}};
}

ordered_json locationOf(const std::string& path) {
    return {{"uri", fileURI(path)}, {"range", rangeOf({}, {})}};
}

ordered_json locationOf(const kelwhich::Explanation::Candidate& candidate, const ResolverSession& resolver) {
    const bool exists = analysis::isAbsoluteFile(candidate.result) && !resolver.isMissing(candidate);
    return exists ? locationOf(inUTF8(candidate.result.path)) : ordered_json(nullptr);
}

} // namespace tessgen::cli
