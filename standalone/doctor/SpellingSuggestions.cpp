#include "standalone/doctor/SpellingSuggestions.hpp"

#include "standalone/store/SupportRecords.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <utility>

namespace tessgen::standalone {

namespace {

using Clock = SpellingSuggestions::Clock;

// Reports everything as absent once the deadline has passed.
class TreeUntil final : public FileTree {
public:
    TreeUntil(const FileTree& tree, Clock::time_point deadline) : tree_(&tree), deadline_(deadline) {}

    [[nodiscard]] std::optional<std::vector<Entry>> entries(const std::string& folder,
                                                            const EntryFilter& wanted) const override {
        const auto inTime = [&](std::string_view name) { return wanted.accepts(name) && Clock::now() < deadline_; };
        return Clock::now() < deadline_ ? tree_->entries(folder, {inTime}) : std::nullopt;
    }
    [[nodiscard]] std::optional<Kind> kindOf(const std::string& path) const override {
        return Clock::now() < deadline_ ? tree_->kindOf(path) : std::nullopt;
    }

private:
    const FileTree* tree_;
    Clock::time_point deadline_;
};

struct TimeIsUp {};

} // namespace

std::size_t toleratedEdits(std::string_view name) {
    return name.size() < 4 ? 1 : name.size() < 9 ? 2 : 3;
}

SpellingSuggestions::SpellingSuggestions(const SessionState& session, Clock::time_point deadline)
    : deadline_(deadline) {
    const auto now = Clock::now();
    const auto endOfRecords = now + (deadline - now) / 4;
    const auto add = [this](std::u16string_view name) {
        if (auto text = toUTF8(name)) {
            names_.push_back(std::move(*text));
        }
    };
    for (const Builtin& builtin : session.installation.builtins) {
        add(builtin.name);
    }
    try {
        if (session.store) {
            session.store->forEachRecord([&](const SupportRecord& record) {
                std::for_each(record.names.begin(), record.names.end(), add);
                if (Clock::now() >= endOfRecords) {
                    throw TimeIsUp();
                }
            });
        }
    } catch (const TimeIsUp&) {           // NOLINT(bugprone-empty-catch): the rest is left out
    } catch (const std::runtime_error&) { // NOLINT(bugprone-empty-catch): the store is damaged from here on
    }
    const TreeUntil files(session.files, now + (deadline - now) / 2);
    try {
        for (std::string& symbol : SnapshotSearch(session.installation, files).symbols()) {
            names_.push_back(std::move(symbol));
        }
    } catch (const std::runtime_error&) { // NOLINT(bugprone-empty-catch): the index is damaged somewhere
    }
}

std::vector<std::string> SpellingSuggestions::similarTo(std::string_view name) const {
    const std::size_t edits = toleratedEdits(name);
    std::vector<std::pair<std::size_t, std::string>> found;
    std::size_t compared = 0;
    for (const std::string& known : names_) {
        if (compared++ % 256 == 0 && Clock::now() >= deadline_) {
            break;
        }
        if (known.size() + edits < name.size() || name.size() + edits < known.size()) {
            continue;
        }
        const std::size_t distance = editDistance(name, known, edits);
        if (distance > 0 && distance <= edits) {
            found.emplace_back(distance, known);
        }
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    std::vector<std::string> names;
    names.reserve(found.size());
    for (auto& [distance, known] : found) {
        names.push_back(std::move(known));
    }
    return names;
}

} // namespace tessgen::standalone
