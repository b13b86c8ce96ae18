#include "cli/explanation/ExplanationWording.hpp"
#include "cli/explanation/RenderExplanation.hpp"
#include "cli/output/Columns.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Render.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

using kelwhich::Explanation;
using Candidate = Explanation::Candidate;
using Key = Explanation::Key;
using Ownership = Explanation::Ownership;

constexpr std::size_t keyCount = Explanation::keys.size();

std::string valueOf(Key key, const Candidate& candidate, bool isNarrow) {
    const auto yesOrNo = [](bool value) { return value ? "yes" : "no"; };
    switch (key) {
    case Key::direct:
        return yesOrNo(candidate.isDirect());
    case Key::user:
        return yesOrNo(candidate.isUser());
    case Key::supported:
        return yesOrNo(candidate.isSupported());
    case Key::sourceFile:
        return yesOrNo(candidate.sourceFile);
    case Key::kind:
        return candidate.kind == Explanation::Kind::KELBuiltin ? "KEL built-in"
               : candidate.kind == Explanation::Kind::KELPath  ? "KEL path"
                                                               : "other";
    case Key::gathered:
        break;
    }
    return isNarrow ? std::to_string(candidate.gathered)
                    : fmt::format("{} ({})", candidate.gathered, sourceWords(candidate.source));
}

class ExplanationText {
public:
    ExplanationText(std::string& text, const Style& style, const Explained& explained, std::size_t columns)
        : out_(text), style_(style), explained_(explained), columns_(columns) {}

    void append() {
        const auto& explanation = explained_.explanation;
        add("{}{}{}\n", style_.name, escaped(explained_.query), style_.end);
        for (const auto& redirect : explanation.redirects) {
            add("  redirect to {} by {}\n    {}\n", escaped(inUTF8(redirect.target)), escaped(inUTF8(redirect.path)),
                escaped(redirectWords(redirect, explained_.query)));
        }
        for (const auto& resolution : explanation.resolutions) {
            if (explanation.resolutions.size() > 1) {
                add("\n  {}as {}{}\n", style_.name, escaped(inUTF8(resolution.name)), style_.end);
            }
            append(resolution);
        }
        for (const auto& note : explained_.notes) {
            add("  {}\n", note);
        }
        if (explained_.whyNot) {
            append(*explained_.whyNot);
        }
    }

private:
    template <typename... Arguments>
    void add(fmt::format_string<Arguments...> form, Arguments&&... arguments) {
        out_ += fmt::format(form, std::forward<Arguments>(arguments)...);
    }

    void append(const Explanation::Resolution& resolution) {
        const auto name = inUTF8(resolution.name);
        const auto& candidates = resolution.candidates;
        labelWidth_ = 1;
        for (const auto& candidate : candidates) {
            labelWidth_ = std::max(labelWidth_, labelOf(candidate).size());
        }
        if (candidates.empty()) {
            add("  no candidate\n");
        }
        appendList(candidates);
        if (!candidates.empty()) {
            appendTable(candidates);
        }
        const auto facts = out_.size();
        appendPairs(candidates, name);
        appendCauses(candidates, name);
        for (const auto& dropped : resolution.dropped) {
            add("  left out: {} ({})\n    {}\n", escaped(inUTF8(dropped.result.path)), sourceWords(dropped.source),
                dropWords(dropped, resolution));
        }
        if (out_.size() > facts && !candidates.empty()) {
            out_.insert(facts, 1, '\n');
        }
    }

    void appendList(const std::vector<Candidate>& candidates) {
        const auto others = labelWidth_ + widestKindWords + 6;
        const auto room = columns_ == unlimitedColumns ? unlimitedColumns : columns_ - others;
        std::vector<std::string> paths;
        paths.reserve(candidates.size());
        for (const auto& candidate : candidates) {
            paths.push_back(escaped(inUTF8(candidate.result.path)));
        }
        paths = shortened(std::move(paths), room);
        for (const auto& candidate : candidates) {
            const bool isFirst = candidate.rank == 1 && !candidate.repeat;
            add("  {}{:>{}}  {:{}}  {}{}\n", isFirst ? style_.first : "", labelOf(candidate), labelWidth_,
                kindWords(candidate.result.type), widestKindWords,
                paths[static_cast<std::size_t>(&candidate - candidates.data())], isFirst ? style_.end : "");
        }
    }

    void appendTable(const std::vector<Candidate>& candidates) {
        constexpr std::size_t widest = 80;
        const bool isNarrow = columns_ < widest;
        const std::array<std::string_view, keyCount> titles = {
            "direct", "user", "supported", isNarrow ? "source" : "source file", "kind", "found"};
        constexpr std::array<std::size_t, keyCount> leasts = {6, 4, 9, 0, 13, 0};
        add("\n  {}{:{}}", style_.aside, "", labelWidth_);
        for (std::size_t i = 0; i < keyCount; ++i) {
            add("  {:{}}", titles.at(i), i + 1 < keyCount ? leasts.at(i) : 0);
        }
        add("{}\n", style_.end);
        for (const auto& candidate : candidates) {
            std::string row = fmt::format("  {:>{}}", labelOf(candidate), labelWidth_);
            for (std::size_t i = 0; i < keyCount; ++i) {
                const auto key = Explanation::keys.at(i);
                const bool decides = candidate.ahead == key;
                const auto width = std::max(leasts.at(i), titles.at(i).size());
                const auto value = valueOf(key, candidate, isNarrow) + (decides ? "*" : "");
                const auto padding = i + 1 < keyCount ? width - std::min(width, value.size()) : 0;
                row += fmt::format("  {}{}{}{:{}}", decides ? style_.name : "", value, decides ? style_.end : "", "",
                                   padding);
            }
            add("{}\n", row);
        }
    }

    void appendPairs(const std::vector<Candidate>& candidates, const std::string& name) {
        for (std::size_t i = 0; i + 1 < candidates.size(); ++i) {
            add("  {}\n", orderWords(candidates[i], candidates[i + 1], name));
        }
    }

    // Details that the table lacks: the folder that makes a file host code, and the contents of records.
    void appendCauses(const std::vector<Candidate>& candidates, const std::string& name) {
        for (const auto& candidate : candidates) {
            if (explained_.isMissing(candidate)) {
                add("  {} is missing: its record leads to it, but there is no such file\n", labelOf(candidate));
            }
            if (candidate.ownership == Ownership::sourceCode || candidate.ownership == Ownership::supportPackage) {
                add("  {}\n", escaped(reason(Key::user, candidate, labelOf(candidate), name)));
            }
            if (candidate.record) {
                add("  record of {}: {}\n", labelOf(candidate), escaped(recordWords(candidate)));
            }
        }
    }

    void append(const WhyNot& whyNot) {
        add("\n  why not {}?\n", escaped(whyNot.path));
        if (whyNot.candidate) {
            add("    it is the candidate {}\n", escaped(*whyNot.candidate));
        }
        if (whyNot.place == WhyNot::Place::first) {
            add("    it is the first\n");
        }
        for (const auto& obstacle : whyNot.obstacles) {
            add("    {}\n", escaped(obstacle.words));
        }
        if (whyNot.wouldWinBy) {
            add("    without that it would come first: {}\n", escaped(*whyNot.wouldWinBy));
        }
    }

    std::string& out_;
    const Style& style_;
    const Explained& explained_;
    std::size_t columns_;
    std::size_t labelWidth_ = 1;
};

} // namespace

std::string asText(const Explained& explained, bool coloured, std::size_t columns) {
    const auto style = outputStyle(coloured);
    std::string text;
    ExplanationText(text, style, explained, columns).append();
    return text;
}

std::string searchedAsText(const std::vector<SearchedFolder>& searched, SearchedDetail detail, bool coloured) {
    const auto style = outputStyle(coloured);
    const bool all = detail == SearchedDetail::all;
    auto text = all ? fmt::format("{}The host searched, in this order:{}\n", style.aside, style.end)
                    : fmt::format("{}The host searched {}{}.{}\n", style.aside, counted(searched.size(), "folder"),
                                  detail == SearchedDetail::hint ? "; --verbose lists them" : "", style.end);
    for (const auto& [path, problem] : searched) {
        if (all || !problem.empty()) {
            const std::string_view words = problem == "absent"       ? ": does not exist"
                                           : problem == "notAFolder" ? ": is not a folder"
                                           : problem.empty()         ? ""
                                                                     : ": cannot be read";
            text += fmt::format("  {}{}\n", escaped(path), words);
        }
    }
    return text;
}

} // namespace tessgen::cli
