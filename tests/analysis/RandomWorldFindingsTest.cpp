#include "analysis/Findings.hpp"
#include "analysis/PreferredCandidate.hpp"

#include "tests/support/Model.hpp"
#include "tests/support/RandomWorld.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

namespace tessgen::test {
namespace {

using Found = std::vector<std::pair<std::string_view, std::u16string>>; // codes, each with the other file

struct Listed {
    WhichResult result;
    std::u16string name; // that it is judged under
    bool operator==(const WhichResult& other) const { return result == other; }
};

std::vector<Listed> listed(const Model& model, const std::u16string& name) {
    std::vector<Listed> all;
    auto lists = model.targets(name);
    lists.push_back(name);
    for (const auto& list : lists) {
        for (const auto& result : model.ordered(list)) {
            if (std::count(all.begin(), all.end(), result) == 0) {
                all.push_back({result, list});
            }
        }
    }
    return all;
}

// The rules about a name once more, as plainly as they can be written.
Found stated(const Model& model, const std::u16string& name, bool exists) {
    Found found;
    const auto all = listed(model, name);
    const auto path = all.empty() ? u"" : all[0].result.path;
    const auto add = [&](bool isFound, std::string_view code) {
        if (isFound) {
            found.emplace_back(code, u"");
        }
    };
    const auto addWith = [&](bool isFound, std::string_view code, auto isOther) {
        const auto other = std::find_if(all.begin(), all.end(), isOther);
        if (isFound && other != all.end()) {
            found.emplace_back(code, other->result.path);
        }
    };
    const auto isSupported = [&](const Listed& one) { return model.supported(one.result, one.name); };
    const auto isOfHost = [&](const Listed& one) { return !model.user(one.result) && one.result.path != path; };
    const auto isIndirect = [](const Listed& one) {
        return Model::plain(one.name) && Model::isFile(one.result) && Model::qualifiedName(one.result.path) != one.name;
    };
    const auto isTie = [&](const Listed& one) {
        return &one == all.data() + 1 && one.name == all[0].name
               && model.keys(one.result, one.name) == model.keys(all[0].result, one.name);
    };
    add(all.empty(), "no-candidate");
    if (!all.empty()) {
        add(!isSupported(all[0]), "unsupported");
        add(!exists, "missing-file");
        addWith(!isSupported(all[0]), "hides-supported", isSupported);
        addWith(model.user(all[0].result), "hides-host", isOfHost);
        addWith(true, "order-only", isTie);
        add(std::all_of(all.begin(), all.end(), isIndirect), "only-indirect");
    }
    std::set<std::pair<std::u16string, std::u16string>> met;
    for (const auto& [from, target, counts] : model.redirects(name)) {
        if (met.emplace(from, target).second && (!counts || model.ordered(target).empty())) {
            found.emplace_back(counts ? "redirect-dead" : "redirect-ignored", all.empty() || from == path ? u"" : from);
        }
    }
    return found;
}

TEST(Findings, AreThereExactlyWhenTheirRulesSay) {
    constexpr std::size_t worlds = KELWHICH_RANDOM_WORLDS / 25;
    std::map<std::string_view, std::size_t> counts;
    WorldMaker maker(1177);
    for (std::size_t i = 0; i < worlds && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        auto made = maker.make();
        RecordingHost::reset().sourceCodeDirs = made.sourceCodeDirs;
        const Model model(made.world, made.sourceCodeDirs);
        const auto resolver = makeResolver(made.world);
        const bool exists = i % 3 != 0;
        for (const auto& name : made.names) {
            const auto findings = analysis::findingsOfUse(resolver.explain(name), exists);
            Found found;
            for (const auto& finding : findings) {
                ++counts[finding.code];
                found.emplace_back(finding.code, finding.code == "no-candidate" ? u"" : finding.other);
            }
            EXPECT_EQ(found, stated(model, name, exists));
            const auto main = std::find_if(findings.begin(), findings.end(), [](const auto& finding) {
                return finding.code == "missing-file" || finding.code == "hides-supported"
                       || finding.code == "order-only";
            });
            const auto finding = analysis::mainFinding(resolver.explain(name), exists);
            EXPECT_EQ(finding ? finding->code : "", main != findings.end() ? main->code : "");
        }
    }
    EXPECT_EQ(counts.size(), 9U);
    for (const auto& [code, count] : counts) {
        EXPECT_GT(count, worlds / 50) << code;
    }
}

} // namespace
} // namespace tessgen::test
