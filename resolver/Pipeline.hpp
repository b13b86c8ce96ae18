// How a name becomes a list of candidates: redirects, gathering, ordering, dropping repeats. `resolve` and `explain`
// run this one pipeline, each with a recorder of its own.
//
// A Recorder names its type `Candidate` and is notified of each decision; NoRecorder shows what it has to offer.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

template <typename Recorder>
class KELWHICH_NO_EXPORT KELWhichResolver::Pipeline {
public:
    using Candidate = typename Recorder::Candidate;
    using Candidates = std::vector<Candidate>;

    Pipeline(const KELWhichResolver& resolver, Recorder& recorder) noexcept
        : resolver_(resolver), recorder_(recorder) {}

    Candidates resolve(const std::u16string& name) const;
    Candidates resolveWithoutRedirect(const std::u16string& name) const;
    Candidates gather(const std::u16string& name) const;

private:
    [[nodiscard]] bool isHonoured(const BasicSupportEntry& entry, const std::u16string& name) const;
    void order(Candidates& candidates, const std::u16string& name) const;

    const KELWhichResolver& resolver_;
    Recorder& recorder_;
};

// Keeps the results alone.
struct NoRecorder {
    using Candidate = WhichResult;

    // Whether it is notified of every judgement, also where the order does not depend on it.
    static constexpr bool wantsEveryJudgement = false;

    static const WhichResult& resultOf(const Candidate& candidate) noexcept { return candidate; }

    // A record that redirects, and how its file defines the name.
    static void noteRedirect(const KELWhichResolver::BasicSupportEntry& /*entry*/,
                             Explanation::Definition /*definition*/) noexcept {}

    // A name to be resolved by itself has up to `most` candidates; each result is then kept or dropped.
    static void start(const std::u16string& /*name*/, std::size_t /*most*/) noexcept {}
    static Candidate keep(WhichResult&& result, Explanation::Source /*source*/) noexcept { return std::move(result); }
    static void drop(WhichResult&& /*result*/, Explanation::Source /*source*/,
                     Explanation::DropRule /*rule*/) noexcept {}

    // A judgement of a candidate; a plain truth value says whether it is of one kind.
    static void note(const Candidate& /*candidate*/, const auto& /*judgement*/) noexcept {}

    // The candidates of a name in their order.
    static void noteOrder(const std::vector<Candidate>& /*candidates*/) noexcept {}
    // The place of a candidate in the whole answer.
    static void notePlace(const Candidate& /*candidate*/, std::size_t /*number*/, bool /*isRepeat*/) noexcept {}
};

} // namespace tessgen::kelwhich
