#include "cli/explanation/WhyNot.hpp"

#include "cli/explanation/ExplanationWording.hpp"
#include "cli/explanation/GivenPath.hpp"
#include "cli/explanation/Supposition.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/doctor/NotFound.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/store/SupportRecords.hpp"
#include "standalone/text/PathText.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <compare>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

using kelwhich::Explanation;
using Candidate = Explanation::Candidate;
using Resolution = Explanation::Resolution;

std::string joined(const std::vector<std::string>& texts) {
    std::string list;
    for (const auto& text : texts) {
        list += (&text == &texts.front() ? "" : " and ") + text;
    }
    return list;
}

// The names that the store has for a record.
std::vector<std::string> namesOf(const kelwhich::SupportEntry& record) {
    std::vector<std::string> names;
    if (const auto& store = standalone::currentSession().store) {
        store->forEachRecord([&](const standalone::SupportRecord& other) {
            if (!other.entry.isBuiltin && other.entry.path == record.path) {
                std::transform(other.names.begin(), other.names.end(), std::back_inserter(names), inUTF8);
            }
        });
    }
    return names;
}

template <typename Result>
struct Found {
    const Resolution* resolution;
    const Result* result; // null when there is none
};

// The first of the results, candidates or dropped ones, of all resolutions that `isIt` accepts.
template <typename Result, typename Predicate>
Found<Result> findResult(const Explanation& explanation, std::vector<Result> Resolution::*results, Predicate isIt) {
    for (const auto& resolution : explanation.resolutions) {
        const auto& all = resolution.*results;
        const auto found = std::find_if(all.begin(), all.end(), isIt);
        if (found != all.end()) {
            return {&resolution, &*found};
        }
    }
    return {nullptr, nullptr};
}

template <typename Predicate>
Found<Candidate> findCandidate(const Explanation& explanation, Predicate isIt) {
    return findResult(explanation, &Resolution::candidates, [&](const Candidate& c) { return isIt(c.result.path); });
}

template <typename Predicate>
Found<Explanation::Dropped> findInPrivateFolder(const Explanation& explanation, Predicate isIt) {
    return findResult(explanation, &Resolution::dropped, [&](const Explanation::Dropped& dropped) {
        return dropped.rule == Explanation::DropRule::privateFolder && isIt(dropped.result.path);
    });
}

class WhyNotFinder {
public:
    WhyNotFinder(const std::string& path, const Explanation& explanation, const ResolverSession& resolver)
        : explanation_(explanation), resolver_(resolver), given_(parseName(path)),
          path_(absolute(path)), answer_{path, WhyNot::Place::absent, {}, {}, {}, {}} {}

    WhyNot find() {
        const auto isIt = [this](const std::u16string& path) { return path == given_ || path == path_; };
        if (!locate(isIt) && (resolver_.isReplayed() || !locateElsewhere())) {
            const auto dropped = findResult(explanation_, &Resolution::dropped,
                                            [&](const Explanation::Dropped& d) { return isIt(d.result.path); });
            answer_.place = dropped.result != nullptr ? WhyNot::Place::dropped : WhyNot::Place::absent;
            explainAbsence();
        }
        return answer_;
    }

private:
    // Finds the definition among the candidates, and among what was dropped for its folder. A dropped record of a host
    // file does not count: the host's own answer speaks for the file.
    template <typename Predicate>
    bool locate(Predicate isIt) {
        const auto [own, candidate] = findCandidate(explanation_, isIt);
        if (candidate != nullptr) {
            answer_.rank = candidate->rank;
            answer_.place = candidate->rank == 1 ? WhyNot::Place::first : WhyNot::Place::behind;
            compareWithFirst(explanation_, *own, *candidate, "");
            return true;
        }
        const auto [resolution, dropped] = findInPrivateFolder(explanation_, isIt);
        if (dropped != nullptr) {
            answer_.place = WhyNot::Place::dropped;
            add(fmt::format("it was left out as {}: {}", sourceWords(dropped->source),
                            dropWords(*dropped, *resolution)));
        }
        return dropped != nullptr;
    }

    // The same, when the search reaches the file by another path.
    bool locateElsewhere() {
        const auto place = withoutFolderLinks(inUTF8(path_));
        return locate([&](const std::u16string& path) {
            const bool isSame = path.starts_with(u'/') && isPlace(inUTF8(path), place);
            if (isSame) {
                answer_.candidate = inUTF8(path);
            }
            return isSame;
        });
    }

    void add(std::string words, std::optional<Explanation::Key> key = std::nullopt) {
        answer_.obstacles.push_back({key, std::move(words)});
    }

    // Adds what stands before a candidate. It would have to be as good as the first one, which is at least as good as
    // those between them.
    void compareWithFirst(const Explanation& explanation, const Resolution& own, const Candidate& candidate,
                          const std::string& prefix) {
        if (candidate.rank == 1) {
            return;
        }
        for (const auto& resolution : explanation.resolutions) {
            if (&resolution == &own) {
                break;
            }
            if (!resolution.candidates.empty()) {
                add(fmt::format("{}a record redirects {} to {}, whose candidates come first", prefix,
                                inUTF8(explanation.name), inUTF8(resolution.name)));
            }
        }
        const auto& first = own.candidates.front();
        if (&first != &candidate) {
            compareKeys(first, candidate, inUTF8(own.name), prefix);
        }
    }

    void compareKeys(const Candidate& first, const Candidate& candidate, const std::string& name,
                     const std::string& prefix) {
        for (const auto key : Explanation::keys) {
            const auto order = Explanation::compare(key, first, candidate);
            if (order == std::strong_ordering::greater) {
                answer_.wouldWinBy = reason(key, candidate, "it", name);
                return;
            }
            if (order == std::strong_ordering::less) {
                add(fmt::format("{}{}, while {}", prefix, ownReason(key, candidate, name),
                                reason(key, first, inUTF8(first.result.path), name)),
                    key);
            }
        }
    }

    // As `reason`, but with every folder that makes the file host code.
    [[nodiscard]] std::string ownReason(Explanation::Key key, const Candidate& candidate,
                                        const std::string& name) const {
        std::vector<std::string> folders;
        if (key == Explanation::Key::user && !candidate.hostFolder.empty() && !resolver_.isReplayed()) {
            const auto& installation = standalone::currentSession().installation;
            const auto path = inUTF8(candidate.result.path);
            for (const auto& folder : standalone::sourceCodePaths(installation)) {
                if (path.starts_with(folder)) {
                    folders.push_back("the source-code folder " + folder);
                }
            }
            if (const auto& packages = installation.supportPackageRoot; packages && path.starts_with(*packages)) {
                folders.push_back("the support-package root " + *packages);
            }
        }
        return folders.empty() ? reason(key, candidate, "it", name)
                               : "it is host code: its path begins with " + joined(folders);
    }

    void explainAbsence() {
        if (resolver_.isReplayed()) {
            add("no recorded answer contains it");
            return;
        }
        const auto& installation = standalone::currentSession().installation;
        const auto& path = answer_.path;
        if (path.find('/') == std::string::npos && !standalone::hasExtension(path, installation.extensions)
            && !standalone::realPath(path)) {
            add(fmt::format("no built-in of that name is a candidate of {}, and there is no such file",
                            inUTF8(explanation_.name)));
            return;
        }
        if (kelwhich::RealFileSystem().isOnKELPath(path_) && !standalone::isSearched(path_, installation)) {
            explainMissingRecord();
        } else {
            const auto name = nameToExplain();
            auto missing = standalone::whyNotFound(inUTF8(path_), name, standalone::currentSession());
            for (auto& words : missing.reasons) {
                add(std::move(words));
            }
            const bool isOther = missing.name != name;
            if (!missing.name.empty()) {
                explainNext(
                    supposeFound(isOther ? missing.name : explanation_.name, missing.name, path_, missing.place),
                    isOther ? fmt::format("as {}: ", inUTF8(missing.name)) : "");
            }
        }
    }

    // The resolved name that the file defines, for it may be a redirect's target; else the name asked for.
    [[nodiscard]] const std::u16string& nameToExplain() const {
        const auto defined = standalone::definedName(path_);
        const auto& all = explanation_.resolutions;
        const auto own = std::find_if(all.begin(), all.end(), [&](const auto& r) { return r.name == defined; });
        return own == all.end() ? explanation_.name : own->name;
    }

    // For a file that only a record leads to.
    void explainMissingRecord() {
        const auto& session = standalone::currentSession();
        const auto& name = nameToExplain();
        const auto known = resolver_->findByPath(path_);
        if (session.files.kindOf(inUTF8(path_)) != standalone::FileTree::Kind::file) {
            add(standalone::absenceOf(inUTF8(path_)));
        }
        if (!known) {
            add("it has no support record, and only a record leads to a KEL path file");
        } else if (const auto names = namesOf(*known->entry);
                   std::find(names.begin(), names.end(), inUTF8(name)) == names.end()) {
            add(fmt::format("its support record is for {}, not for {}", joined(names), inUTF8(name)));
        }
        const auto record = known ? known->entry : usualRecord(name);
        const auto supposed = supposeRecord(explanation_.name, standalone::definedName(name), record);
        if (explainNext(supposed, "")) {
            return;
        }
        const auto [resolution, standIn] = findResult(supposed, &Resolution::candidates, [&](const Candidate& c) {
            return c.record && c.record->path == record->path;
        });
        add(standIn != nullptr
                ? fmt::format("{} of the support packages stands in for it", inUTF8(standIn->result.path))
                : fmt::format("it is not found as {}: it defines {}", inUTF8(name),
                              inUTF8(standalone::definedName(path_))));
    }

    // The record that the file would be given: it supports the file.
    [[nodiscard]] std::shared_ptr<const kelwhich::SupportEntry> usualRecord(const std::u16string& name) const {
        const auto& session = standalone::currentSession();
        auto record = std::make_shared<kelwhich::SupportEntry>();
        const auto& packages = session.supportPackageRoot;
        record->path = packages && path_.starts_with(*packages) ? session.root + path_.substr(packages->size()) : path_;
        record->symbol = name;
        record->supportFlags.front() = true;
        return record;
    }

    // Adds what would still stand before the file in a supposed explanation. False when it is not in there.
    bool explainNext(const Explanation& supposed, const std::string& prefix) {
        const auto isIt = [this](const std::u16string& path) { return path == path_; };
        if (const auto [own, candidate] = findCandidate(supposed, isIt); candidate != nullptr) {
            compareWithFirst(supposed, *own, *candidate, prefix);
            return true;
        }
        const auto [resolution, dropped] = findInPrivateFolder(supposed, isIt);
        if (dropped != nullptr) {
            add(fmt::format("{}it lies {}", prefix, dropWords(*dropped, *resolution)));
        }
        return dropped != nullptr;
    }

    const Explanation& explanation_;
    const ResolverSession& resolver_;
    const std::u16string given_;
    const std::u16string path_; // as a candidate would have it
    WhyNot answer_;
};

} // namespace

WhyNot whyNot(const std::string& path, const Explanation& explanation, const ResolverSession& resolver) {
    return WhyNotFinder(path, explanation, resolver).find();
}

} // namespace tessgen::cli
