// A growing list of candidates without repeats. A repeat has the path and the type of an earlier candidate.
#pragma once

#include "host/KeyedHash.hpp"
#include "host/Paths.hpp"
#include "tessgen/kelwhich/WhichResult.hpp"

#include <cstddef>
#include <iterator>
#include <unordered_set>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

// Drops each repeat when it comes, so that memory follows the number of candidates that differ.
template <typename Recorder>
class DistinctCandidates {
public:
    using Candidates = std::vector<typename Recorder::Candidate>;

    explicit DistinctCandidates(Recorder& recorder) noexcept : recorder_(recorder) {}
    DistinctCandidates(const DistinctCandidates&) = delete;
    DistinctCandidates& operator=(const DistinctCandidates&) = delete;

    void append(Candidates more) {
        auto next = candidates_.size();
        if (candidates_.empty()) {
            candidates_ = std::move(more);
        } else {
            candidates_.insert(candidates_.end(), std::move_iterator(more.begin()), std::move_iterator(more.end()));
        }
        auto end = next; // of the candidates that are kept
        for (; next < candidates_.size(); ++next) {
            if (next != end) {
                candidates_[end] = std::move(candidates_[next]);
            }
            const auto place = placeOf(end);
            recorder_.notePlace(candidates_[end], place + 1, place != end);
            end += place == end ? 1U : 0U;
        }
        candidates_.erase(candidates_.begin() + static_cast<std::ptrdiff_t>(end), candidates_.end());
    }

    Candidates take() && { return std::move(candidates_); }

private:
    // The place of the first candidate like the one at `place`, which is kept if it is the first itself.
    std::size_t placeOf(std::size_t place) {
        if (place == 0) { // most names have one candidate, for which no table is made
            return place;
        }
        if (places_.empty()) {
            places_.reserve(candidates_.size());
            places_.insert(0);
        }
        return *places_.insert(place).first;
    }

    [[nodiscard]] const WhichResult& at(std::size_t place) const { return recorder_.resultOf(candidates_[place]); }

    struct Hash {
        const DistinctCandidates* list;
        // Not `noexcept`, so that the table keeps the hash.
        std::size_t operator()(std::size_t place) const {
            return keyedHash(list->at(place).path); // few paths come with two types
        }
    };
    struct Equal {
        const DistinctCandidates* list;
        bool operator()(std::size_t a, std::size_t b) const {
            const auto& one = list->at(a);
            const auto& other = list->at(b);
            return one.type == other.type && equal(one.path, other.path);
        }
    };

    Recorder& recorder_;
    Candidates candidates_;
    std::unordered_set<std::size_t, Hash, Equal> places_{0, Hash{this}, Equal{this}}; // in `candidates_`
};

} // namespace tessgen::kelwhich
