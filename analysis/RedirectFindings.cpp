#include "analysis/RedirectFindings.hpp"

#include "analysis/Answer.hpp"
#include "analysis/Rules.hpp"
#include "host/Paths.hpp"

#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace tessgen::analysis {

namespace {

using kelwhich::Explanation;
using Redirect = Explanation::Redirect;

std::u16string whyIgnored(const Redirect& redirect) {
    return redirect.definition == Explanation::Definition::otherClass ? u" is a method of a class"
                                                                      : u" defines " + redirect.definedName;
}

Finding findingOf(const Redirect& redirect, const std::u16string& name) {
    const std::u16string file(kelwhich::fileName(redirect.path));
    const auto& broken = redirect.isHonoured() ? rule::redirectDead : rule::redirectIgnored;
    auto message =
        redirect.isHonoured()
            ? u"the record of " + file + u" redirects to " + redirect.target + u", and nothing is found there"
            : u"a redirect to " + redirect.target + u" does not count: " + file + whyIgnored(redirect);
    return {broken.code, broken.level, name, redirect.path, {}, {}, std::move(message), broken.advice};
}

} // namespace

std::vector<Finding> redirectFindings(const Explanation& explanation) {
    const auto answer = answerOf(explanation);
    std::vector<Finding> findings;
    std::set<std::pair<std::u16string_view, std::u16string_view>> met;
    auto followed = explanation.resolutions.begin(); // of the next redirect that counts
    for (const auto& redirect : explanation.redirects) {
        const bool leadsOn = redirect.isHonoured() && !(followed++)->candidates.empty();
        if (leadsOn || !met.emplace(redirect.path, redirect.target).second) {
            continue;
        }
        auto& finding = findings.emplace_back(findingOf(redirect, explanation.name));
        if (!answer.empty() && answer.front().candidate->result.path != redirect.path) {
            finding.other = std::exchange(finding.path, answer.front().candidate->result.path);
        }
    }
    return findings;
}

} // namespace tessgen::analysis
