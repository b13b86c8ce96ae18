#include "analysis/Findings.hpp"
#include "cli/checking/Checking.hpp"
#include "cli/explanation/ReachingNames.hpp"
#include "host/Paths.hpp"
#include "standalone/Session.hpp"
#include "standalone/doctor/NotFound.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"
#include "tests/support/RandomInstallation.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

// The names that lead to each file of random installations, as `provides` and `check` find them.
namespace tessgen::test {
namespace {

using Reach = std::set<std::tuple<std::string, kelwhich::WhichResultType, std::size_t>>; // name, kind and rank

TEST(ReachingNames, AreResolvingTurnedAround) {
    std::size_t redirected = 0;
    std::size_t reached = 0;
    for (unsigned seed = 0; seed < 25; ++seed) {
        const TemporaryFolder folder;
        const InstallationMaker world(seed, folder);
        const standalone::Session session(folder.path("h"), standalone::View::snapshot);
        const kelwhich::KELWhichResolver resolver(std::make_unique<kelwhich::ORVAKWhichResolver>(),
                                                  std::make_unique<kelwhich::ScreenerMetadataResolver>(),
                                                  std::make_unique<kelwhich::RealFileSystem>());
        std::map<std::string, Reach> expected;
        for (const auto& name : plainAndDottedNames()) {
            const auto results = resolver.resolve(name);
            for (std::size_t i = 0; i < results.size(); ++i) {
                expected[standalone::toUTF8(results[i].path).value()].emplace(standalone::toUTF8(name).value(),
                                                                              results[i].type, i + 1);
            }
        }
        cli::ReachingNames reaching(standalone::currentSession(), resolver);
        for (const auto& path : world.paths) {
            Reach found;
            for (const auto& name : reaching.find(path).names) {
                found.emplace(name.name, name.result.type, name.rank);
                EXPECT_EQ(name.before.size(), name.rank - 1);
                redirected += name.redirectedTo ? 1U : 0U;
            }
            ASSERT_EQ(found, expected[path]) << "seed " << seed << ", " << path;
            reached += found.size();
        }
    }
    EXPECT_GT(reached, 500U);
    EXPECT_GT(redirected, 100U);
}

using Found = std::multiset<std::tuple<std::string, std::u16string, std::u16string, std::u16string, int>>;

void add(Found& found, const std::vector<analysis::Finding>& findings, const std::string& place) {
    for (const auto& finding : findings) {
        found.emplace(place + " " + std::string(finding.code), finding.name, finding.path,
                      finding.other + finding.message, static_cast<int>(finding.level));
    }
}

// Each definition by itself: every plain and dotted name is asked whether it leads there.
std::vector<analysis::Finding> statedOf(const std::u16string& path, const cli::ResolverSession& resolver) {
    const auto& installation = standalone::currentSession().installation;
    const auto name = kelwhich::fileName(path);
    analysis::Definition definition{path,
                                    {},
                                    name.ends_with(u".vk") || name.ends_with(u".vkx"),
                                    resolver.isOnKELPath(path),
                                    standalone::isSearched(path, installation)};
    const auto all = plainAndDottedNames();
    for (const auto& other : std::set<std::u16string>(all.begin(), all.end())) {
        const auto results = resolver->resolve(other);
        if (std::any_of(results.begin(), results.end(), [&](const auto& result) { return result.path == path; })) {
            definition.names.push_back(other);
        }
    }
    return analysis::findingsOfDefinition(definition, resolver->explain(analysis::ownName(definition)));
}

TEST(Checking, FindsWhatEachDefinitionAndUseByItselfDoes) {
    std::map<std::string, std::size_t> codes;
    for (unsigned seed = 0; seed < 25; ++seed) {
        const TemporaryFolder folder;
        const InstallationMaker world(seed, folder);
        cli::Request request;
        request.installation = folder.path("h");
        cli::ResolverSession resolver(request, standalone::View::snapshot);
        std::vector<cli::Use> uses;
        Found expected;
        for (const auto& name : plainAndDottedNames()) {
            const auto explanation = resolver->explain(name);
            const auto results = resolver->resolve(name);
            const bool exists = results.empty() || !results[0].path.starts_with(u'/')
                                || std::filesystem::exists(standalone::toUTF8(results[0].path).value());
            for (const std::size_t line : {1U, 2U}) {
                uses.push_back({name, {"/p/q", line}});
                add(expected, analysis::findingsOfUse(explanation, exists), "use");
            }
        }
        const auto files = cli::sourceFilesBelow({folder.path()}, standalone::currentSession());
        std::set<std::u16string> stated; // the files
        for (const auto& path : world.paths) {
            if (std::filesystem::exists(path)) {
                stated.insert(standalone::toUTF16(path).value());
                add(expected, statedOf(standalone::toUTF16(path).value(), resolver), "definition");
            }
        }
        ASSERT_EQ(std::set<std::u16string>(files.paths.begin(), files.paths.end()), stated) << seed;
        const auto checked = cli::checkAll(files.paths, uses, standalone::currentSession(), resolver, nullptr);
        Found found;
        for (const auto& entry : checked.entries) {
            add(found, {entry.finding}, entry.use ? "use" : "definition");
            ++codes[std::string(entry.finding.code)];
        }
        ASSERT_EQ(found, expected) << seed;
        EXPECT_EQ(checked.definitions, files.paths.size());
        resolver.close();
    }
    EXPECT_GE(codes.size(), 11U) << "every rule";
}

} // namespace
} // namespace tessgen::test
