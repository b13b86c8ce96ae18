#include "cli/lsp/NameLists.hpp"

#include "analysis/Answer.hpp"
#include "cli/lsp/JsonRpc.hpp"
#include "cli/lsp/Places.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Render.hpp"
#include "standalone/doctor/KnownNames.hpp"
#include "standalone/text/Text.hpp"
#include "tessgen/kelwhich/ClassFolderInfo.hpp"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <stdexcept>
#include <utility>

namespace tessgen::cli {

namespace {

using Candidate = kelwhich::Explanation::Candidate;
using kelwhich::WhichResult;
using kelwhich::WhichResultType;
using nlohmann::ordered_json;

// The numbers of a kind among those of completion and of symbols.
struct KindNumbers {
    int completion;
    int symbol;
};
constexpr KindNumbers functionKind = {3, 12};
constexpr KindNumbers methodKind = {2, 6};
constexpr KindNumbers classKind = {7, 5};

KindNumbers kindOf(const WhichResult& result) {
    if (!analysis::isFile(result.type)) {
        return result.type == WhichResultType::ORVAKBuiltinMethod ? methodKind : functionKind;
    }
    const auto folder = kelwhich::getClassFolderInfo(result.path);
    const auto file = std::u16string_view(result.path).substr(result.path.rfind(u'/') + 1);
    return !folder ? functionKind : file.substr(0, file.rfind(u'.')) == folder->className ? classKind : methodKind;
}

// The preferred candidate; nothing when there is none, or when it cannot be found out.
std::optional<Candidate> preferredOf(const std::string& name, ResolverSession& resolver) {
    try {
        const auto explanation = resolver->explain(parseName(name));
        resolver.boundCache(name.size());
        const auto answer = analysis::answerOf(explanation);
        return answer.empty() ? std::nullopt : std::optional(*answer.front().candidate);
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

const std::vector<std::string>& namesOf(const Asked& asked) {
    if (!asked.names) {
        asked.names = standalone::knownNames(standalone::currentSession());
    }
    return *asked.names;
}

// Calls `item` with the names and their preferred candidates, and gathers what it returns but null.
class NameList {
public:
    explicit NameList(const Asked& asked) : asked_(asked) {}

    // Whether more names can be added.
    template <typename Item>
    bool add(const std::string& name, Item item) {
        constexpr std::size_t most = 200;
        constexpr std::chrono::seconds patience(1);    // of somebody who types
        if (!asked_.documents.pattern.matches(name)) { // it could not be typed
            return true;
        }
        isIncomplete_ = std::chrono::steady_clock::now() - begin_ > patience;
        const auto preferred = isIncomplete_ ? std::nullopt : preferredOf(name, asked_.resolver);
        auto made = preferred ? item(*preferred) : ordered_json(nullptr);
        if (!made.is_null()) {
            isIncomplete_ = items_.size() == most;
            if (!isIncomplete_) {
                items_.push_back(std::move(made));
            }
        }
        return !isIncomplete_;
    }

    [[nodiscard]] bool isIncomplete() const { return isIncomplete_; }
    ordered_json takeItems() { return std::move(items_); }

private:
    const Asked& asked_;
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
    bool isIncomplete_ = false;
    ordered_json items_ = ordered_json::array();
};

} // namespace

ordered_json completion(const Asked& asked) {
    const auto beginning = asked.documents.beginningAt(asked.params);
    const auto range = rangeOf(beginning.begin, beginning.end);
    const auto& names = namesOf(asked);
    NameList list(asked);
    const auto first = std::lower_bound(names.begin(), names.end(), beginning.text);
    for (auto name = first; name != names.end() && name->starts_with(beginning.text); ++name) {
        const bool goesOn = list.add(*name, [&](const Candidate& preferred) -> ordered_json {
            return {{"label", *name},
                    {"kind", kindOf(preferred.result).completion},
                    {"detail", kindWords(preferred.result.type)},
                    {"textEdit", {{"range", range}, {"newText", *name}}}};
        });
        if (!goesOn) {
            break;
        }
    }
    return {{"isIncomplete", list.isIncomplete()}, {"items", list.takeItems()}};
}

ordered_json workspaceSymbols(const Asked& asked) {
    const auto query = standalone::inLowerCase(textAt(asked.params, "query"));
    NameList list(asked);
    for (const auto& name : namesOf(asked)) {
        if (standalone::inLowerCase(name).find(query) == std::string::npos) {
            continue;
        }
        const bool goesOn = list.add(name, [&](const Candidate& preferred) -> ordered_json {
            auto location = locationOf(preferred, asked.resolver);
            if (location.is_null()) {
                return nullptr;
            }
            return {{"name", name}, {"kind", kindOf(preferred.result).symbol}, {"location", std::move(location)}};
        });
        if (!goesOn) {
            break;
        }
    }
    return list.takeItems();
}

} // namespace tessgen::cli
