#include "cli/explanation/ReachingNames.hpp"

#include "standalone/Session.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"
#include "tests/support/RandomInstallation.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

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

} // namespace
} // namespace tessgen::test
