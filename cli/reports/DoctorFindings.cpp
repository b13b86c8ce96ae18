#include "cli/reports/DoctorFindings.hpp"

#include "cli/output/Escape.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace tessgen::cli {

namespace {

using standalone::Diagnostic;

// An error makes names fail, or misjudges every file; what is noted changes no answer.
analysis::Level levelOf(Diagnostic diagnostic) {
    switch (diagnostic) {
    case Diagnostic::packageRootHoldsRoot:
    case Diagnostic::folderUnreadable:
    case Diagnostic::standInIsCircle:
        return analysis::Level::error;
    case Diagnostic::builtinGivenTwice:
    case Diagnostic::searchIndexMissing:
    case Diagnostic::searchIndexOutdated:
        return analysis::Level::note;
    default:
        return analysis::Level::warning;
    }
}

std::u16string utf16(std::string_view text) {
    return standalone::toUTF16(forJSON(text)).value();
}

// The place, then ": "; without the path of the finding at its beginning, which is shown anyway.
std::string_view placeBesidePath(const standalone::Finding& finding, const std::string& place) {
    return std::string_view(place).substr(place.starts_with(finding.path + ": ") ? finding.path.size() + 2 : 0);
}

} // namespace

analysis::Finding asFinding(const standalone::Finding& finding) {
    const auto& [code, sentence, advice] = textOf(finding.diagnostic);
    const auto clause = sentence.substr(0, sentence.rfind('.'));
    return {code,
            levelOf(finding.diagnostic),
            utf16(finding.name),
            utf16(finding.path),
            utf16(finding.other),
            {},
            utf16(placeBesidePath(finding, finding.place + ": ")) + utf16(clause),
            advice};
}

std::vector<analysis::Rule> doctorRules() {
    std::vector<analysis::Rule> rules;
    for (std::size_t index = 0; index < standalone::diagnosticCount; ++index) {
        const auto diagnostic = static_cast<Diagnostic>(index);
        const auto& [code, message, advice] = textOf(diagnostic);
        rules.push_back({code, levelOf(diagnostic), message, advice});
    }
    return rules;
}

} // namespace tessgen::cli
