#include "tessgen/kelwhich/Explanation.hpp"

#include "host/Paths.hpp"
#include "resolver/Duplicates.hpp"
#include "resolver/Judgements.hpp"
#include "resolver/Ordering.hpp"
#include "resolver/Predicates.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

namespace {

using Candidate = Explanation::Candidate;
using Key = Explanation::Key;
using Kind = Explanation::Kind;

Kind kindOf(WhichResultType type) {
    switch (type) {
    case WhichResultType::KELBuiltin:
        return Kind::KELBuiltin;
    case WhichResultType::KELPath:
        return Kind::KELPath;
    default:
        return Kind::other;
    }
}

std::strong_ordering trueFirst(bool a, bool b) {
    return a == b ? std::strong_ordering::equal : a ? std::strong_ordering::less : std::strong_ordering::greater;
}

// The most significant key in which two candidates differ; none other than `gathered` if they tie on all before it.
Key keyBetween(const Candidate& a, const Candidate& b) {
    return *std::find_if(Explanation::keys.begin(), Explanation::keys.end() - 1,
                         [&](Key key) { return Explanation::compare(key, a, b) != std::strong_ordering::equal; });
}

void rank(Explanation& explanation) {
    std::size_t count = 0;
    for (const auto& resolution : explanation.resolutions) {
        count += resolution.candidates.size();
    }
    DistinctResults distinct(count);
    for (auto& resolution : explanation.resolutions) {
        for (auto& candidate : resolution.candidates) {
            const auto place = distinct.add(candidate.result);
            candidate.rank = place.number;
            candidate.repeat = !place.isNew;
        }
    }
}

} // namespace

std::strong_ordering Explanation::compare(Key key, const Candidate& a, const Candidate& b) {
    switch (key) {
    case Key::direct:
        return trueFirst(a.isDirect(), b.isDirect());
    case Key::user:
        return trueFirst(a.isUser(), b.isUser());
    case Key::supported:
        return trueFirst(a.isSupported(), b.isSupported());
    case Key::sourceFile:
        return trueFirst(a.sourceFile, b.sourceFile);
    case Key::kind:
        return a.kind <=> b.kind;
    case Key::gathered:
        break;
    }
    return a.gathered <=> b.gathered;
}

// Tells what `resolve` would be told, and writes it down.
struct KELWhichResolver::RecordingJudge {
    static WhichResultType type(const Candidate* candidate) { return candidate->result.type; }

    static bool isBuiltinOrSourceFile(Candidate* candidate) {
        return candidate->sourceFile = kelwhich::isBuiltinOrSourceFile(candidate->result);
    }

    bool isSupported(Candidate* candidate) const {
        auto verdict = resolver.supportOf(candidate->result, name);
        candidate->support = verdict.support;
        candidate->record = std::move(verdict.record);
        return candidate->isSupported();
    }

    bool isUser(Candidate* candidate) const {
        const auto verdict = resolver.ownershipOf(candidate->result);
        candidate->ownership = verdict.ownership;
        candidate->hostFolder = candidate->result.path.substr(0, verdict.folderSize);
        return candidate->isUser();
    }

    bool isDirect(Candidate* candidate) const {
        candidate->definition = definitionBy(candidate->result, name);
        candidate->definedName = isFile(candidate->result) ? qualifiedNameForPath(candidate->result.path) : u"";
        return candidate->isDirect();
    }

    const KELWhichResolver& resolver;
    const std::u16string& name;
};

Explanation::Resolution KELWhichResolver::explainWithoutRedirect(const std::u16string& name) const {
    Explanation::Resolution resolution{name, {}, {}};
    std::vector<Candidate> found;
    for (auto& gathered : gather(name)) {
        if (gathered.dropped) {
            resolution.dropped.push_back({std::move(gathered.result), gathered.source, *gathered.dropped});
            continue;
        }
        Candidate candidate{};
        candidate.result = std::move(gathered.result);
        candidate.source = gathered.source;
        candidate.gathered = found.size() + 1;
        candidate.kind = kindOf(candidate.result.type);
        found.push_back(std::move(candidate));
    }
    std::vector<Candidate*> order(found.size());
    std::transform(found.begin(), found.end(), order.begin(), [](Candidate& candidate) { return &candidate; });
    orderByPreference(order, RecordingJudge{*this, name});

    resolution.candidates.reserve(found.size());
    for (auto* const candidate : order) {
        if (!resolution.candidates.empty()) {
            auto& previous = resolution.candidates.back();
            previous.ahead = keyBetween(previous, *candidate);
        }
        resolution.candidates.push_back(std::move(*candidate));
    }
    return resolution;
}

Explanation KELWhichResolver::explain(const std::u16string& name) const {
    Explanation explanation{name, {}, {}};
    for (auto& entry : findSupportEntry(name)) {
        if (entry.carriedFlag) {
            const auto definition = definitionAt(entry.path, name);
            auto defined = qualifiedNameForPath(entry.path);
            explanation.redirects.push_back({std::move(entry.path), std::move(entry.symbol), definition,
                                             std::move(defined), std::move(entry.entry)});
        }
    }
    for (const auto& redirect : explanation.redirects) {
        if (redirect.isHonoured()) {
            explanation.resolutions.push_back(explainWithoutRedirect(redirect.target));
        }
    }
    explanation.resolutions.push_back(explainWithoutRedirect(name));
    rank(explanation);
    return explanation;
}

} // namespace tessgen::kelwhich
