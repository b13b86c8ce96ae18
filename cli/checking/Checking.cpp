#include "cli/checking/Checking.hpp"

#include "analysis/Answer.hpp"
#include "analysis/Findings.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Progress.hpp"
#include "standalone/doctor/NamesByFile.hpp"
#include "standalone/doctor/NotFound.hpp"
#include "standalone/text/Hash.hpp"
#include "standalone/text/PathText.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <numeric>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace tessgen::cli {

namespace {

using kelwhich::Explanation;

// A name, and one definition or use for which it is asked.
struct Question {
    std::u16string name;
    std::size_t subject; // the index of a definition; that of a use follows those of the definitions

    friend bool operator<(const Question& a, const Question& b) {
        return std::tie(a.name, a.subject) < std::tie(b.name, b.subject);
    }
};
using Questions = std::vector<Question>;

// Calls `answer` with each name of sorted questions once, and with the first and the last question about it.
template <typename Answer>
void forEachName(const Questions& questions, Answer answer) {
    for (auto first = questions.begin(); first != questions.end();) {
        const auto last =
            std::find_if(first, questions.end(), [&](const Question& other) { return other.name != first->name; });
        answer(first, last);
        first = last;
    }
}

class Checking {
public:
    Checking(const std::vector<std::u16string>& definitions, const std::vector<Use>& uses,
             const standalone::SessionState& session, ResolverSession& resolver, ReportedNames* names)
        : definitions_(definitions), uses_(uses), session_(session), resolver_(resolver), names_(names),
          reachedAs_(definitions.size()), progress_("names") {
        byPath_.reserve(definitions.size());
        for (std::size_t i = 0; i < definitions.size(); ++i) {
            byPath_.emplace(definitions[i], i);
        }
    }

    Checked run() {
        questions_.reserve(definitions_.size() + uses_.size());
        for (std::size_t i = 0; i < definitions_.size(); ++i) {
            questions_.push_back({standalone::definedName(definitions_[i]), i});
        }
        for (std::size_t i = 0; i < uses_.size(); ++i) {
            questions_.push_back({uses_[i].name, definitions_.size() + i});
        }
        std::sort(questions_.begin(), questions_.end());
        forEachName(questions_, [this](auto first, auto last) { check(first, last); });
        checkOthers();
        return takeAll();
    }

private:
    using Position = Questions::const_iterator;

    struct Found {
        std::size_t subject;
        ReportEntry entry;
    };

    // Nothing when the resolver fails; then `failure_` says why.
    std::optional<Explanation> explain(const std::u16string& name) {
        progress_.show(++asked_, 0);
        try {
            auto explanation = resolver_->explain(name);
            resolver_.boundCache(name.size());
            return explanation;
        } catch (const std::exception& error) {
            failure_ = errorMessage(error);
            return std::nullopt;
        }
    }

    // Everything about one name.
    void check(Position first, Position last) {
        const auto explanation = explain(first->name);
        if (!explanation) {
            std::for_each(first, last, [this](const Question& question) { skip(question.subject); });
            return;
        }
        note(*explanation);
        for (; first != last; ++first) {
            if (first->subject >= definitions_.size()) {
                checkUse(first->subject, *explanation);
            } else if (!first->name.empty() && reachedAs_[first->subject] == first->name) {
                checkDefinition(first->subject, first->name, *explanation);
            } else {
                others_.push_back(first->subject);
            }
        }
    }

    // Whether a definition is rather judged under this name: the one that it defines, else the first.
    static bool isBetter(const std::u16string& name, const std::u16string& other, std::u16string_view path) {
        const auto own = standalone::definedName(std::u16string(path));
        return other != own && (name == own || name < other);
    }

    // Notes which definitions the name leads to.
    void note(const Explanation& explanation) {
        for (const auto& resolution : explanation.resolutions) {
            for (const auto& candidate : resolution.candidates) {
                const auto known = byPath_.find(candidate.result.path);
                if (known == byPath_.end()) {
                    continue;
                }
                if (auto& best = reachedAs_[known->second];
                    best.empty() || isBetter(explanation.name, best, known->first)) {
                    best = explanation.name;
                }
            }
        }
    }

    void checkUse(std::size_t subject, const Explanation& explanation) {
        const auto answer = analysis::answerOf(explanation);
        const bool exists = answer.empty() || !resolver_.isMissing(*answer.front().candidate);
        add(subject, analysis::findingsOfUse(explanation, exists));
        show(explanation);
        ++result_.uses;
    }

    void checkDefinition(std::size_t subject, const std::u16string& name, const Explanation& explanation) {
        add(subject, analysis::findingsOfDefinition({definitions_[subject], {name}, true, false, true}, explanation));
        show(explanation);
        ++result_.definitions;
    }

    void show(const Explanation& explanation) {
        if (names_ != nullptr) {
            names_->add(explanation);
        }
    }

    // The definitions that the names which they define do not lead to.
    void checkOthers() {
        if (others_.empty()) {
            return;
        }
        for (const auto& name : namesForOthers()) {
            if (const auto explanation = explain(name)) {
                note(*explanation);
            } else {
                result_.skipped.push_back({inUTF8(name), failure_});
            }
        }
        Questions questions;
        for (const auto subject : others_) {
            if (reachedAs_[subject].empty()) {
                add(subject, analysis::findingsOfDefinition(unreached(definitions_[subject]), {}));
                ++result_.definitions;
            } else {
                questions.push_back({reachedAs_[subject], subject});
            }
        }
        std::sort(questions.begin(), questions.end());
        forEachName(questions, [this](auto first, auto last) {
            const auto explanation = explain(first->name); // has not failed before
            std::for_each(first, last, [&](const Question& question) {
                if (explanation) {
                    checkDefinition(question.subject, question.name, *explanation);
                } else {
                    skip(question.subject);
                }
            });
        });
    }

    // The plain and dotted names that may lead to them and were not asked for yet.
    std::set<std::u16string> namesForOthers() const {
        const standalone::NamesByFile known(session_);
        std::set<std::string> fileNames;
        for (const auto subject : others_) {
            const auto& path = definitions_[subject];
            fileNames.insert(inUTF8(path.substr(path.rfind(u'/') + 1)));
        }
        std::set<std::u16string> names;
        const auto add = [&](const std::string& name) {
            auto text = standalone::toUTF16(name).value();
            const auto place = std::lower_bound(questions_.begin(), questions_.end(), Question{text, 0});
            if (place == questions_.end() || place->name != text) {
                names.insert(std::move(text));
            }
        };
        for (const auto& fileName : fileNames) {
            const auto found = known.find(fileName);
            std::for_each(found.begin(), found.end(), add);
        }
        std::for_each(known.redirecting().begin(), known.redirecting().end(), add);
        return names;
    }

    analysis::Definition unreached(const std::u16string& path) const {
        const auto& installation = session_.installation;
        return {path,
                {},
                standalone::hasExtension(inUTF8(path.substr(path.rfind(u'/') + 1)), installation.extensions),
                resolver_.isOnKELPath(path),
                standalone::isSearched(path, installation)};
    }

    void add(std::size_t subject, std::vector<analysis::Finding> findings) {
        for (auto& finding : findings) {
            ReportEntry entry{std::move(finding)};
            if (subject >= definitions_.size()) {
                entry.use = uses_[subject - definitions_.size()].place;
            }
            found_.push_back({subject, std::move(entry)});
        }
    }

    void skip(std::size_t subject) {
        if (subject < definitions_.size()) {
            result_.skipped.push_back({inUTF8(definitions_[subject]), failure_});
            return;
        }
        const auto& [name, place] = uses_[subject - definitions_.size()];
        const auto words = inUTF8(name);
        result_.skipped.push_back(
            {place.file.empty() ? words : fmt::format("{}:{}:{}: {}", place.file, place.line, place.column, words),
             failure_});
    }

    Checked takeAll() {
        progress_.clear();
        std::vector<std::size_t> order(found_.size()); // moving indices is cheaper
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::stable_sort(order.begin(), order.end(),
                         [this](std::size_t a, std::size_t b) { return found_[a].subject < found_[b].subject; });
        result_.entries.reserve(found_.size());
        for (const auto index : order) {
            result_.entries.push_back(std::move(found_[index].entry));
        }
        std::sort(result_.skipped.begin(), result_.skipped.end(),
                  [](const Skipped& a, const Skipped& b) { return a.place < b.place; });
        return std::move(result_);
    }

    const std::vector<std::u16string>& definitions_;
    const std::vector<Use>& uses_;
    const standalone::SessionState& session_;
    ResolverSession& resolver_;
    ReportedNames* names_; // null: nobody wants them
    std::unordered_map<std::u16string_view, std::size_t, standalone::TextHash> byPath_;
    Questions questions_;
    std::vector<std::u16string> reachedAs_; // of each definition, the name that it is judged under; empty so far
    std::vector<std::size_t> others_;       // definitions that their own names do not lead to
    std::vector<Found> found_;
    Checked result_;
    std::string failure_;
    std::size_t asked_ = 0;
    Progress progress_;
};

} // namespace

Checked checkAll(const std::vector<std::u16string>& definitions, const std::vector<Use>& uses,
                 const standalone::SessionState& session, ResolverSession& resolver, ReportedNames* names) {
    return Checking(definitions, uses, session, resolver, names).run();
}

} // namespace tessgen::cli
