#include "cli/commands/Answering.hpp"
#include "cli/commands/LockOf.hpp"
#include "cli/locking/Changes.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/services/SessionState.hpp"
#include "tests/support/RandomInstallation.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tessgen::test {
namespace {

using nlohmann::json;

// The candidates of a name as JSON has them, with paths below the temporary folder.
using Answers = std::map<std::string, json>;

Answers answersOf(const TemporaryFolder& folder, cli::Request request) {
    Answers answers;
    request.json = true;
    cli::ResolverSession resolver(request, standalone::View::snapshot);
    for (const auto& name : plainAndDottedNames()) {
        auto line = cli::asJSONLine(cli::answerTo(cli::inUTF8(name), resolver, request));
        for (auto at = line.find(folder.path()); at != std::string::npos; at = line.find(folder.path())) {
            line.erase(at, folder.path().size());
        }
        answers[cli::inUTF8(name)] = json::parse(line).at("candidates");
    }
    resolver.close();
    return answers;
}

// The one of `list` with the path and kind of `like`.
const json* sameIn(const json& list, const json& like) {
    const auto found = std::find_if(list.begin(), list.end(), [&](const json& candidate) {
        return candidate["path"] == like["path"] && candidate["kind"] == like["kind"];
    });
    return found == list.end() ? nullptr : &*found;
}

// The codes of what changed, by the answers alone.
std::vector<std::string> stated(const json& before, const json& after) {
    std::vector<std::string> codes;
    auto order = [](const json& candidates) {
        std::vector<std::pair<json, json>> all;
        for (const auto& candidate : candidates) {
            all.emplace_back(candidate["path"], candidate["kind"]);
        }
        return all;
    };
    if (order(before) != order(after)) {
        codes.emplace_back(before.empty()                        ? "name-added"
                           : after.empty()                       ? "name-removed"
                           : order(before)[0] != order(after)[0] ? "preferred-changed"
                                                                 : "order-changed");
    }
    for (const auto& [code, field] : {std::pair("support-changed", "supported"), {"existence-changed", "missing"}}) {
        if (std::any_of(before.begin(), before.end(), [&, field = field](const json& candidate) {
                const auto* const now = sameIn(after, candidate);
                return now != nullptr && now->value(field, false) != candidate.value(field, false);
            })) {
            codes.emplace_back(code);
        }
    }
    return codes;
}

struct Side {
    Answers answers;
    cli::Lock lock;
};

// One of two installations: the second is another one, or the same in which files are gone or host code is elsewhere.
Side makeSide(unsigned seed, bool isSecond) {
    const TemporaryFolder folder;
    const InstallationMaker world(seed + (isSecond && seed % 3 == 0 ? 1 : 0), folder);
    auto number = seed;
    for (const auto& path : world.paths) {
        if (isSecond && seed % 3 == 1 && number++ % 4 == 0) {
            std::filesystem::remove(path);
        }
    }
    auto manifest = InstallationMaker::manifest;
    if (isSecond && seed % 3 == 2) {
        manifest.replace(manifest.find(R"(["a"])"), 5, R"(["b"])");
        folder.write("h/installation.json", manifest);
    }
    cli::Request request;
    request.installation = folder.path("h");
    cli::Outcome outcome;
    Side side{answersOf(folder, request), lockOf(request, std::nullopt, std::nullopt, outcome)};
    EXPECT_EQ(outcome.exitCode(), 0);
    // What is written is read again, and nothing differs from it.
    std::string text = cli::lockFirstLine();
    for (const auto& line : side.lock.lines) {
        text += line + "\n";
    }
    const auto again = cli::readLock(folder.write("names.lock", text), std::nullopt);
    EXPECT_EQ(again.value().lines, side.lock.lines);
    EXPECT_TRUE(changesBetween(*again, lockOf(request, std::nullopt, std::nullopt, outcome)).empty());
    return side;
}

TEST(Locks, DifferAsTheAnswersDo) {
    std::map<std::string, std::size_t> counts;
    for (unsigned seed = 0; seed < 60; ++seed) {
        const auto before = makeSide(seed, false);
        const auto after = makeSide(seed, true);
        std::map<std::string, std::vector<std::string>> found;
        for (const auto& name : changesBetween(before.lock, after.lock)) {
            for (const auto& change : name.changes) {
                found[cli::inUTF8(name.after.name)].emplace_back(change.finding.code);
                ++counts[std::string(change.finding.code)];
            }
        }
        for (const auto& [name, old] : before.answers) {
            const auto& now = after.answers.at(name);
            auto codes = stated(old, now);
            if (codes.empty() && (old != now || !found[name].empty())) { // answers show only a part of the reasons
                codes.emplace_back("reason-changed");
            }
            ASSERT_EQ(found[name], codes) << seed << " " << name << "\n" << old << "\n" << now;
        }
    }
    EXPECT_EQ(counts.size(), 7U) << testing::PrintToString(counts);
    for (const auto& [code, count] : counts) {
        EXPECT_GT(count, 1U) << code;
    }
}

TEST(Locks, TextsAreReadAsTheyAreEscaped) {
    std::mt19937 random(7);
    const std::u16string units = u"a \\{}u\t\n\x85\u202E\u00E4\U0001F600\xD83D\xDE00\xDC00\xD800x";
    for (int i = 0; i < 2000; ++i) {
        std::u16string text;
        for (auto length = random() % 6; length > 0; --length) {
            text += units[random() % units.size()];
        }
        const auto escaped = cli::escapedText(text);
        EXPECT_EQ(cli::unescapedText(escaped), standalone::toUTF8(text) ? std::optional(text) : std::nullopt)
            << escaped;
        EXPECT_TRUE(standalone::isUTF8(escaped));
        EXPECT_EQ(escaped.find_first_of("\t\n"), std::string::npos);
    }
    for (const auto* const text :
         {"\\", "\\u", "\\u{", "\\u{}", "\\u{110000}", "\\u{1x}", "\\u{-1}", "\\x{FF}", "\xFF"}) {
        EXPECT_EQ(cli::unescapedText(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace tessgen::test
