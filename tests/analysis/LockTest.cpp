#include "analysis/LockChanges.hpp"

#include "tests/support/RandomWorld.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <sstream>

namespace tessgen::test {
namespace {

using analysis::LockedName;

std::string written(const std::u16string& text) {
    std::ostringstream out;
    for (const char16_t unit : text) {
        const bool isPlain = u' ' < unit && unit <= u'~' && unit != u'\\';
        isPlain ? out << static_cast<char>(unit) : out << "\\u{" << std::hex << unsigned{unit} << '}';
    }
    return out.str();
}

std::optional<std::u16string> read(std::string_view spelled) {
    std::u16string text;
    for (; !spelled.empty(); spelled.remove_prefix(1)) {
        if (spelled.front() != '\\') {
            text += static_cast<char16_t>(spelled.front());
            continue;
        }
        const auto end = spelled.find('}');
        if (!spelled.starts_with("\\u{") || end == std::string_view::npos) {
            return std::nullopt;
        }
        text += static_cast<char16_t>(std::stoi(std::string(spelled.substr(3, end - 3)), nullptr, 16));
        spelled.remove_prefix(end);
    }
    return text;
}

constexpr analysis::Spelling spelling{written, read};

TEST(Lock, LineIsReadAsItWasWritten) {
    constexpr std::size_t worlds = KELWHICH_RANDOM_WORLDS / 25;
    WorldMaker maker(55);
    std::size_t redirected = 0;
    for (std::size_t i = 0; i < worlds; ++i) {
        auto made = maker.make();
        RecordingHost::reset().sourceCodeDirs = made.sourceCodeDirs;
        const auto resolver = makeResolver(made.world);
        for (const auto& name : made.names) {
            if (name.empty()) {
                continue;
            }
            const auto locked = analysis::lockedName(resolver.explain(name),
                                                     [](const auto& candidate) { return candidate.rank % 3 == 0; });
            Results results;
            for (const auto& candidate : locked.candidates) {
                results.push_back({candidate.path, candidate.kind});
                redirected += !candidate.ahead && &candidate != &locked.candidates.back() ? 1U : 0U;
            }
            ASSERT_EQ(results, resolver.resolve(name));
            if (!results.empty()) {
                const auto line = lockLine(locked, spelling);
                ASSERT_EQ(readLockLine(line, spelling), locked) << line;
                ASSERT_EQ(analysis::nameInLine(line), spelledName(name, spelling));
            }
        }
    }
    EXPECT_GT(redirected, worlds / 7);
}

TEST(Lock, FirstLineSortsBeforeEveryName) {
    for (const auto* const name : {u"!", u"\"a", u"#", u"# kelwhich-lock/0", u"$", u" ", u"\t", u"~"}) {
        const auto spelled = spelledName(name, spelling);
        EXPECT_LT(std::string(analysis::lockHead), spelled);
        EXPECT_EQ(read(spelled), name);
    }
}

TEST(Lock, SaysWhatIsWrongInALine) {
    const std::string candidate = "\t/w/f.vk\tORVAKPath\tuser";
    EXPECT_EQ(ascii(readLockLine("f" + candidate, spelling).candidates.at(0).path), "/w/f.vk");
    const std::string fields =
        "expected a name, then a path, a kind, verdicts and a key for each candidate, without a key for the last";
    const std::string text = "expected a text, escaped as kelwhich lock writes it";
    const std::string verdicts = "field 4: expected \"-\", or some of user,supported,indirect,missing";
    const std::string key = "field 5: expected \"by \" and a key, such as user";
    const std::pair<std::string, std::string> cases[] = {
        {"", fields},
        {"f", fields},
        {"<<<<<<< ours", fields},
        {"f" + candidate + "\tby user", fields},
        {candidate, "field 1: expected a name"},
        {"\\f" + candidate, "field 1: " + text},
        {"f\t\\", "field 2: " + text},
        {"f\t/w/f.vk\tPath\tuser", "field 3: expected a kind, such as KELPath"},
        {"f\t/w/f.vk\tORVAKPath\t", verdicts},
        {"f\t/w/f.vk\tORVAKPath\tunsupported", verdicts},
        {"f\t/w/f.vk\tORVAKPath\tsupported,user", verdicts},
        {"f" + candidate + "\tuser" + candidate, key},
        {"f" + candidate + "\tby chance" + candidate, key},
    };
    for (const auto& [line, message] : cases) {
        try {
            readLockLine(line + (message.starts_with("field 2") ? "\tORVAKPath\tuser" : ""), spelling);
            ADD_FAILURE() << line;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(), message) << line;
        }
    }
}

LockedName locked(const std::string& candidates) {
    return candidates.empty() ? LockedName{u"f", {}} : readLockLine("f\t" + candidates, spelling);
}

// A line for each: "LEVEL CODE: PATH, OTHER by KEY: MESSAGE".
std::string changed(const std::string& before, const std::string& after) {
    std::string text;
    for (const auto& [finding, isAboutFile, old, now] : changesOf(locked(before), locked(after))) {
        text.append(levelName(finding.level)).append(" ").append(finding.code).append(": ");
        text += ascii(finding.path) + (isAboutFile ? " (a file)" : "") + (finding.other.empty() ? "" : ", ")
                + ascii(finding.other)
                + (finding.key ? " by key " + std::to_string(static_cast<int>(*finding.key)) : "") + ": "
                + ascii(finding.message) + "\n";
        EXPECT_EQ(finding.name, u"f");
        EXPECT_EQ(finding.message, u"before: " + old + u"; now: " + now);
    }
    return text;
}

TEST(Lock, ChangesNameBothSides) {
    const std::string mine = "mine/f.vk\tORVAKPath\tuser";
    const std::string kel = "kel/f.vk\tKELPath\tsupported";
    const std::string other = "/x/f.vk\tORVAKPath\t-";
    const std::string builtin = "f\tKELBuiltin\tsupported";
    EXPECT_EQ(changed("", ""), "");
    EXPECT_EQ(changed(mine + "\tby user\t" + kel, mine + "\tby user\t" + kel), "");
    EXPECT_EQ(changed("", builtin), "note name-added: f: before: no candidate; now: f, supported\n");
    EXPECT_EQ(
        changed(mine, ""),
        "warning name-removed: , mine/f.vk: before: mine/f.vk, the user's own, not supported; now: no candidate\n");
    EXPECT_EQ(changed(kel, mine + "\tby user\t" + kel),
              "warning preferred-changed: mine/f.vk (a file), kel/f.vk by key 1: before: kel/f.vk, supported; now: "
              "mine/f.vk, the user's own, not supported\n");
    EXPECT_EQ(changed(kel, mine + "\tby user\t" + other + "\tby direct\t" + kel).substr(0, 65),
              "warning preferred-changed: mine/f.vk (a file), kel/f.vk by key 0:");
    EXPECT_EQ(changed(kel, mine + "\tby redirect\t" + other + "\tby user\t" + kel).substr(0, 56),
              "warning preferred-changed: mine/f.vk (a file), kel/f.vk:");
    EXPECT_EQ(changed(builtin + "\tby user\tf\tORVAKBuiltin\t-", builtin + "\tby user\t" + other),
              "note order-changed: /x/f.vk (a file), f: before: 2. f, not supported; now: 2. /x/f.vk, not supported\n");
    EXPECT_EQ(changed(kel, "k/f.vk\tKELPath\tsupported"),
              "warning preferred-changed: k/f.vk (a file), kel/f.vk: before: kel/f.vk, supported; now: k/f.vk, "
              "supported\n");
    EXPECT_EQ(changed(kel, mine + "\tby user\tkel/f.vk\tKELPath\t-").substr(141),
              "warning support-changed: kel/f.vk (a file): before: 1. kel/f.vk, supported; now: 2. kel/f.vk, not "
              "supported\n");
    EXPECT_EQ(changed("f\tORVAKBuiltin\t-", builtin),
              "warning preferred-changed: f: before: f, not supported; now: f, supported\n");
    EXPECT_EQ(changed(mine + "\tby user\t" + kel, mine),
              "note order-changed: , kel/f.vk: before: 2. kel/f.vk, supported; now: 2. no candidate\n");
    EXPECT_EQ(
        changed(mine + "\tby user\t" + kel,
                "kel/f.vk\tKELPath\tmissing\tby direct\tmine/f.vk\tORVAKPath\tuser,indirect"),
        "warning preferred-changed: kel/f.vk (a file), mine/f.vk by key 0: before: mine/f.vk, the user's own, not "
        "supported; now: kel/f.vk, not supported, missing\n"
        "warning support-changed: kel/f.vk (a file): before: 2. kel/f.vk, supported; now: 1. kel/f.vk, not "
        "supported, missing\n"
        "warning existence-changed: kel/f.vk (a file): before: 2. kel/f.vk, supported; now: 1. kel/f.vk, not "
        "supported, missing\n");
    EXPECT_EQ(changed(mine + "\tby user\t" + kel, mine + "\tby redirect\t" + kel),
              "note reason-changed: mine/f.vk (a file): before: mine/f.vk, the user's own, not supported, before the "
              "next one by user; now: mine/f.vk, the user's own, not supported, before the next one by a redirect\n");
    EXPECT_EQ(changed(mine + "\tby user\t" + kel, mine + "\tby user\t" + kel + ",indirect"),
              "note reason-changed: kel/f.vk (a file): before: 2. kel/f.vk, supported; now: 2. kel/f.vk, supported, "
              "indirect\n");
    EXPECT_EQ(analysis::changeRules.size(), 7U);
}

} // namespace
} // namespace tessgen::test
