#include "analysis/Findings.hpp"

#include "analysis/PreferredCandidate.hpp"
#include "analysis/RedirectFindings.hpp"

#include <utility>

namespace tessgen::analysis {

namespace {

// The errors come first.
std::vector<Finding> findingsOfName(const kelwhich::Explanation& explanation, Level unsupportedLevel,
                                    bool preferredExists) {
    std::vector<Finding> findings;
    for (const auto& finding : {noCandidate(explanation), unsupported(explanation, unsupportedLevel),
                                missingFile(explanation, preferredExists), hidesSupported(explanation),
                                hidesHost(explanation), orderOnly(explanation), onlyIndirect(explanation)}) {
        if (finding) {
            findings.push_back(*finding);
        }
    }
    for (auto& finding : redirectFindings(explanation)) {
        findings.push_back(std::move(finding));
    }
    return findings;
}

} // namespace

std::vector<Finding> findingsOfUse(const kelwhich::Explanation& explanation, bool preferredExists) {
    return findingsOfName(explanation, Level::error, preferredExists);
}

std::vector<Finding> findingsOfDefinition(const Definition& definition, const kelwhich::Explanation& explanation) {
    if (auto finding = unreachable(definition)) {
        return {*std::move(finding)};
    }
    if (auto finding = hidden(definition, explanation)) {
        return {*std::move(finding)};
    }
    return findingsOfName(explanation, Level::note, true);
}

} // namespace tessgen::analysis
