#include "standalone/doctor/SpellingSuggestions.hpp"

#include "standalone/files/BoundedFileTree.hpp"
#include "standalone/store/SupportRecords.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace tessgen::standalone {

namespace {

using Clock = SpellingSuggestions::Clock;

struct TimeIsUp {};

// The last parts of a dotted name, as many as `dots` separate.
std::string_view lastParts(std::string_view name, std::ptrdiff_t dots) {
    auto begin = name.rfind('.');
    while (dots-- > 0 && begin != std::string_view::npos && begin > 0) {
        begin = name.rfind('.', begin - 1);
    }
    return begin == std::string_view::npos ? name : name.substr(begin + 1);
}

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
        if (const auto store = session.supportStore()) {
            store->forEachRecord([&](const SupportRecord& record) {
                std::for_each(record.names.begin(), record.names.end(), add);
                if (Clock::now() >= endOfRecords) {
                    throw TimeIsUp();
                }
            });
        }
    } catch (const TimeIsUp&) {           // NOLINT(bugprone-empty-catch): the rest is left out
    } catch (const std::runtime_error&) { // NOLINT(bugprone-empty-catch): the store is damaged from here on
    }
    const auto endOfFiles = now + (deadline - now) / 2;
    const BoundedFileTree files(session.files, [endOfFiles] { return Clock::now() < endOfFiles; });
    try {
        for (std::string& symbol : SnapshotSearch(session.installation, files).symbols()) {
            names_.push_back(std::move(symbol));
        }
    } catch (const std::runtime_error&) { // NOLINT(bugprone-empty-catch): the index is damaged somewhere
    }
}

std::vector<std::string> SpellingSuggestions::similarTo(std::string_view name) const {
    const std::size_t edits = toleratedEdits(name);
    const auto dots = std::count(name.begin(), name.end(), '.');
    std::vector<std::pair<std::size_t, std::string>> found;
    std::size_t compared = 0;
    for (const std::string& known : names_) {
        if (compared++ % 256 == 0 && Clock::now() >= deadline_) {
            break;
        }
        const auto end = lastParts(known, dots);
        if (end.size() + edits < name.size() || name.size() + edits < end.size() || name == known) {
            continue;
        }
        const auto distance = std::min(editDistance(name, known, edits), editDistance(name, end, edits));
        if (distance <= edits) {
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

std::vector<std::string> SpellingSuggestions::beginningWith(std::string_view beginning) const {
    std::vector<std::string> names;
    std::copy_if(names_.begin(), names_.end(), std::back_inserter(names),
                 [&](const std::string& name) { return name.starts_with(beginning); });
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

} // namespace tessgen::standalone
