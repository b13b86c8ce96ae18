#include "tessgen/kelwhich/Explanation.hpp"

#include "host/Paths.hpp"
#include "resolver/Judgements.hpp"
#include "resolver/Predicates.hpp"
#include "resolver/Redirects.hpp"
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

// The most significant key in which two candidates differ; `gathered` if they tie on all before it.
Key keyBetween(const Candidate& a, const Candidate& b) {
    return *std::find_if(Explanation::keys.begin(), Explanation::keys.end() - 1,
                         [&](Key key) { return Explanation::compare(key, a, b) != std::strong_ordering::equal; });
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

// Writes down what the pipeline decides. A candidate points into `found_`, and once ordered into the explanation.
class KELWhichResolver::ExplanationRecorder {
public:
    using Candidate = Explanation::Candidate*;
    using Resolution = Explanation::Resolution;

    static constexpr bool wantsEveryJudgement = true;

    explicit ExplanationRecorder(const std::u16string& name) : explanation{name, {}, {}} {}

    static const WhichResult& resultOf(const Explanation::Candidate* candidate) noexcept { return candidate->result; }

    void noteRedirect(const BasicSupportEntry& entry, Explanation::Definition definition) {
        explanation.redirects.push_back(
            {entry.path, entry.symbol, definition, qualifiedNameForPath(entry.path), entry.entry});
    }

    void start(const std::u16string& name, std::size_t most) {
        explanation.resolutions.push_back({name, {}, {}});
        found_.clear();
        found_.reserve(most); // so that no candidate moves
    }

    Candidate keep(WhichResult&& result, Explanation::Source source) {
        auto& candidate = found_.emplace_back();
        candidate.kind = kindOf(result.type);
        candidate.definedName = isBuiltin(result) ? u"" : qualifiedNameForPath(result.path);
        candidate.result = std::move(result);
        candidate.source = source;
        candidate.gathered = found_.size();
        return &candidate;
    }

    void drop(WhichResult&& result, Explanation::Source source, Explanation::DropRule rule) {
        explanation.resolutions.back().dropped.push_back({std::move(result), source, rule});
    }

    static void note(Candidate /*candidate*/, bool /*isOfKind*/) noexcept {}
    static void note(Candidate candidate, SourceFileJudgement judgement) noexcept {
        candidate->sourceFile = judgement.isBuiltinOrSourceFile;
    }
    static void note(Candidate candidate, DefinitionJudgement judgement) noexcept {
        candidate->definition = judgement.definition;
    }
    static void note(Candidate candidate, OwnershipJudgement judgement) {
        candidate->ownership = judgement.ownership;
        candidate->hostFolder.assign(candidate->result.path, 0, judgement.folderSize);
    }
    static void note(Candidate candidate, SupportJudgement&& judgement) noexcept {
        candidate->support = judgement.support;
        candidate->record = std::move(judgement.record);
    }

    void noteOrder(std::vector<Candidate>& candidates) {
        auto& ordered = explanation.resolutions.back().candidates;
        ordered.reserve(candidates.size()); // none may move, since `candidates` is to point to them
        for (auto*& candidate : candidates) {
            if (!ordered.empty()) {
                ordered.back().ahead = keyBetween(ordered.back(), *candidate);
            }
            candidate = &ordered.emplace_back(std::move(*candidate));
        }
    }

    static void notePlace(Candidate candidate, std::size_t number, bool isRepeat) noexcept {
        candidate->rank = number;
        candidate->repeat = isRepeat;
    }

    Explanation explanation;

private:
    std::vector<Explanation::Candidate> found_; // of the name that was started last
};

Explanation KELWhichResolver::explain(const std::u16string& name) const {
    ExplanationRecorder recorder(name);
    Pipeline(*this, recorder).resolve(name);
    return std::move(recorder.explanation);
}

} // namespace tessgen::kelwhich
