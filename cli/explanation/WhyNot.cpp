#include "cli/explanation/WhyNot.hpp"

#include "cli/explanation/ExplanationWording.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/doctor/NotFound.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <compare>
#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

using kelwhich::Explanation;
using Candidate = Explanation::Candidate;
using Resolution = Explanation::Resolution;

// The spellings under which `path` may be a candidate: as it is, absolute without "." and "..", and without links.
std::vector<std::u16string> spellings(const std::string& path) {
    std::vector<std::u16string> all = {parseName(path)};
    const auto add = [&all](const std::string& text) {
        if (auto units = standalone::toUTF16(text); units && units != all.back()) {
            all.push_back(std::move(*units));
        }
    };
    std::error_code unknown;
    const auto folder = std::filesystem::current_path(unknown);
    if (path.starts_with('/') || !unknown) {
        add(standalone::absolutePath(path, folder.string()));
    }
    if (const auto real = standalone::realPath(path)) {
        add(*real);
    }
    return all;
}

class WhyNotFinder {
public:
    WhyNotFinder(const std::string& path, const Explanation& explanation, const ResolverSession& resolver)
        : explanation_(explanation), resolver_(resolver),
          spellings_(spellings(path)), answer_{path, WhyNot::Place::absent, {}, {}, {}} {}

    WhyNot find() {
        for (const auto& resolution : explanation_.resolutions) {
            const auto& candidates = resolution.candidates;
            const auto found = std::find_if(candidates.begin(), candidates.end(),
                                            [this](const Candidate& c) { return matches(c.result.path); });
            if (found != candidates.end()) {
                compareWithFirst(resolution, *found);
                return answer_;
            }
        }
        for (const auto& resolution : explanation_.resolutions) {
            for (const auto& dropped : resolution.dropped) {
                if (matches(dropped.result.path)) {
                    answer_.place = WhyNot::Place::dropped;
                    add(fmt::format("it was left out as {}: {}", sourceWords(dropped.source), dropWords(dropped.rule)));
                    if (dropped.rule == Explanation::DropRule::hostFile) {
                        addReasonsOfSearch(inUTF8(dropped.result.path));
                    }
                    return answer_;
                }
            }
        }
        explainAbsence();
        return answer_;
    }

private:
    [[nodiscard]] bool matches(const std::u16string& path) const {
        return std::find(spellings_.begin(), spellings_.end(), path) != spellings_.end();
    }

    void add(std::string words, std::optional<Explanation::Key> key = std::nullopt) {
        answer_.obstacles.push_back({key, std::move(words)});
    }

    void compareWithFirst(const Resolution& own, const Candidate& candidate) {
        answer_.rank = candidate.rank;
        answer_.place = candidate.rank == 1 ? WhyNot::Place::first : WhyNot::Place::behind;
        if (candidate.rank == 1) {
            return;
        }
        for (const auto& resolution : explanation_.resolutions) {
            if (&resolution == &own) {
                break;
            }
            if (!resolution.candidates.empty()) {
                add(fmt::format("a record redirects {} to {}, whose candidates come first", inUTF8(explanation_.name),
                                inUTF8(resolution.name)));
            }
        }
        const auto& first = own.candidates.front();
        if (&first != &candidate) {
            compareKeys(first, candidate, inUTF8(own.name));
        }
    }

    void compareKeys(const Candidate& first, const Candidate& candidate, const std::string& name) {
        for (const auto key : Explanation::keys) {
            const auto order = Explanation::compare(key, first, candidate);
            if (order == std::strong_ordering::greater) {
                answer_.wouldWinBy = reason(key, candidate, "it", name);
                return;
            }
            if (order == std::strong_ordering::less) {
                add(fmt::format("{}, while {}", reason(key, candidate, "it", name),
                                reason(key, first, inUTF8(first.result.path), name)),
                    key);
            }
        }
    }

    void explainAbsence() {
        if (resolver_.isReplayed()) {
            add("no recorded answer contains it");
            return;
        }
        const bool isFile = answer_.path.find('/') != std::string::npos || standalone::realPath(answer_.path);
        if (!isFile) {
            add(fmt::format("no built-in of that name is a candidate of {}, and there is no such file",
                            inUTF8(explanation_.name)));
            return;
        }
        const auto& path =
            spellings_.at(std::min<std::size_t>(1, spellings_.size() - 1)); // as a candidate would have it
        const auto record = resolver_->findByPath(path);
        const auto* const standIn = record ? candidateOf(*record->entry) : nullptr;
        if (standIn != nullptr) {
            add(fmt::format("{} of the support packages stands in for it", inUTF8(standIn->result.path)));
            return;
        }
        add(record ? fmt::format("its support record is not found under {}; the record's own symbol is {}",
                                 inUTF8(explanation_.name), inUTF8(record->symbol))
                   : "it has no support record");
        addReasonsOfSearch(inUTF8(path));
    }

    // The candidate with the same record.
    [[nodiscard]] const Candidate* candidateOf(const kelwhich::SupportEntry& record) const {
        for (const auto& resolution : explanation_.resolutions) {
            for (const auto& candidate : resolution.candidates) {
                if (candidate.record && candidate.record->path == record.path) {
                    return &candidate;
                }
            }
        }
        return nullptr;
    }

    void addReasonsOfSearch(const std::string& path) {
        if (!resolver_.isReplayed()) {
            for (auto& why : standalone::whyNotFound(path, explanation_.name, standalone::currentSession())) {
                add(std::move(why));
            }
        }
    }

    const Explanation& explanation_;
    const ResolverSession& resolver_;
    std::vector<std::u16string> spellings_;
    WhyNot answer_;
};

} // namespace

WhyNot whyNot(const std::string& path, const Explanation& explanation, const ResolverSession& resolver) {
    return WhyNotFinder(path, explanation, resolver).find();
}

} // namespace tessgen::cli
