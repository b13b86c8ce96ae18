#include "analysis/LockChanges.hpp"

#include "analysis/Answer.hpp"
#include "analysis/Names.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace tessgen::analysis {

namespace {

constexpr std::string_view advice =
    "If that is not meant, find the cause with kelwhich explain; if it is, write the lock anew.";

constexpr Rule nameAdded{"name-added", Level::note, "A name that had no candidate has one.", advice};
constexpr Rule nameRemoved{"name-removed", Level::warning, "A name that had a candidate has none.", advice};
constexpr Rule preferredChanged{"preferred-changed", Level::warning, "A name has another preferred candidate.", advice};
constexpr Rule orderChanged{"order-changed", Level::note,
                            "Behind the preferred candidate of a name, candidates came, went or moved.", advice};
constexpr Rule supportChanged{"support-changed", Level::warning,
                              "A candidate of a name became supported, or is no longer.", advice};
constexpr Rule existenceChanged{"existence-changed", Level::warning,
                                "The file of a candidate, which a record leads to, came or went.", advice};
constexpr Rule reasonChanged{"reason-changed", Level::note,
                             "The candidates of a name have the same order for another reason.", advice};
constexpr std::array everyChange = {nameAdded,      nameRemoved,      preferredChanged, orderChanged,
                                    supportChanged, existenceChanged, reasonChanged};

using Candidates = std::vector<LockedCandidate>;

bool isSame(const LockedCandidate& a, const LockedCandidate& b) {
    return a.kind == b.kind && a.path == b.path;
}

std::u16string asText(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

// The candidate at `place`, which counts from 0.
std::u16string words(const Candidates& candidates, std::size_t place, bool showsRank) {
    const auto rank = showsRank ? asText(std::to_string(place + 1)) + u". " : u"";
    if (place >= candidates.size()) {
        return rank + u"no candidate";
    }
    const auto& candidate = candidates[place];
    return rank + candidate.path + (candidate.isUser ? u", the user's own" : u"")
           + (candidate.isSupported ? u", supported" : u", not supported")
           + (candidate.isIndirect ? u", indirect" : u"") + (candidate.isMissing ? u", missing" : u"");
}

// What puts the candidate at `place` before the next one.
std::u16string reason(const Candidates& candidates, std::size_t place) {
    return place + 1 == candidates.size() ? u""
           : candidates[place].ahead      ? u", before the next one by " + asText(keyName(*candidates[place].ahead))
                                          : u", before the next one by a redirect";
}

// The key that puts the candidate at `first` before the one at `last`: the most significant of those between.
std::optional<kelwhich::Explanation::Key> keyBetween(const Candidates& candidates, std::size_t first,
                                                     std::size_t last) {
    std::optional<kelwhich::Explanation::Key> most = kelwhich::Explanation::Key::gathered;
    for (auto place = first; place < last && most; ++place) {
        most = std::min(most, candidates[place].ahead); // none is the least
    }
    return most;
}

// From the candidate at `before` to the one at `after`, places that may be behind the last.
Change change(const Rule& rule, const LockedName& old, std::size_t before, const LockedName& now, std::size_t after) {
    const auto pathAt = [](const Candidates& candidates, std::size_t place) {
        return place < candidates.size() ? candidates[place].path : u"";
    };
    const bool showsRanks = before > 0 || after > 0;
    const bool isAboutFile = after < now.candidates.size() && isFile(now.candidates[after].kind);
    Change result{{rule.code,
                   rule.level,
                   now.name,
                   pathAt(now.candidates, after),
                   pathAt(old.candidates, before),
                   {},
                   {},
                   rule.advice},
                  isAboutFile,
                  words(old.candidates, before, showsRanks),
                  words(now.candidates, after, showsRanks)};
    if (rule.code == reasonChanged.code && reason(old.candidates, before) != reason(now.candidates, after)) {
        result.before += reason(old.candidates, before);
        result.after += reason(now.candidates, after);
    }
    auto& finding = result.finding;
    finding.other = finding.other == finding.path ? u"" : finding.other;
    const auto other = std::find_if(now.candidates.begin(), now.candidates.end(),
                                    [&](const auto& candidate) { return candidate.path == finding.other; });
    if (const auto place = static_cast<std::size_t>(other - now.candidates.begin());
        other != now.candidates.end() && place > after) {
        finding.key = keyBetween(now.candidates, after, place);
    }
    finding.message = u"before: " + result.before + u"; now: " + result.after;
    return result;
}

// The places of the first candidate of both that has another verdict now.
std::optional<std::pair<std::size_t, std::size_t>> firstChanged(const Candidates& old, const Candidates& now,
                                                                bool LockedCandidate::*verdict) {
    for (std::size_t place = 0; place < old.size(); ++place) {
        const auto other = std::find_if(now.begin(), now.end(), [&](const auto& c) { return isSame(old[place], c); });
        if (other != now.end() && (*other).*verdict != old[place].*verdict) {
            return std::pair(place, static_cast<std::size_t>(other - now.begin()));
        }
    }
    return std::nullopt;
}

} // namespace

const std::span<const Rule> changeRules = everyChange;

std::vector<Change> changesOf(const LockedName& before, const LockedName& after) {
    const auto& old = before.candidates;
    const auto& now = after.candidates;
    std::vector<Change> changes;
    const auto [oldEnd, nowEnd] = std::mismatch(old.begin(), old.end(), now.begin(), now.end(), isSame);
    const auto place = static_cast<std::size_t>(oldEnd - old.begin());
    if (oldEnd != old.end() || nowEnd != now.end()) {
        const auto& rule = old.empty()   ? nameAdded
                           : now.empty() ? nameRemoved
                           : place == 0  ? preferredChanged
                                         : orderChanged;
        changes.push_back(change(rule, before, place, after, place));
    }
    for (const auto& [rule, verdict] : {std::pair(&supportChanged, &LockedCandidate::isSupported),
                                        std::pair(&existenceChanged, &LockedCandidate::isMissing)}) {
        if (const auto places = firstChanged(old, now, verdict)) {
            changes.push_back(change(*rule, before, places->first, after, places->second));
        }
    }
    if (changes.empty() && old != now) {
        const auto differing = std::mismatch(old.begin(), old.end(), now.begin()).first;
        const auto first = static_cast<std::size_t>(differing - old.begin());
        changes.push_back(change(reasonChanged, before, first, after, first));
    }
    return changes;
}

} // namespace tessgen::analysis
