#include "cli/explanation/ReachingNames.hpp"

#include "standalone/Session.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"
#include "tests/support/SupportStores.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace tessgen::test {
namespace {

using standalone::split;

// A small installation made by chance, in which names collide as often as possible; and the paths of its files.
class InstallationMaker {
public:
    InstallationMaker(unsigned seed, const TemporaryFolder& folder) : random_(seed) {
        folder.write("h/installation.json",
                     R"({"supportPackageRoot": "../s", "searchPath": ["a", "b", "../s/a", "a"], "kelPath": ["k"],
                         "sourceCode": ["a"], "supportStore": "support.cdb", "builtins": [{"name": "f"}]})");
        folder.makeFolder("s");
        for (auto count = 30; count > 0; --count) {
            paths.insert(folder.write(path()));
        }
        std::string records;
        std::set<std::string> recorded;
        for (auto count = below(30); count > 0; --count) {
            const auto file = folder.path(path());
            if (!recorded.insert(file).second) {
                continue;
            }
            paths.insert(file);
            records += R"({"path": ")" + file + R"(", "name": ")" + any("f g C p.f p.C C.f p.q.g q")
                       + R"(", "symbol": ")" + any("f f g p.f C.f k/f.vk p.q.g") + R"(", "redirect": )"
                       + any("true false false") + R"(, "supportFlags": [)" + any("true false")
                       + ",false,false,false,false,false]}\n";
        }
        standalone::buildSupportStore(folder.write("records.jsonl", records), folder.path("h/support.cdb"),
                                      folder.path("h"));
    }

    std::set<std::string> paths;

private:
    std::size_t below(std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_); }
    std::string any(std::string_view words) {
        const auto all = split(words, ' ');
        return all[below(all.size())];
    }
    std::string path() {
        return any("h/a h/a h/b h/k h/k s/a s/k") + any("    /+p /+p /+p/+q") + any("    /@f /@C /private")
               + any("/f /f /g /C") + any(".vk .vk .vkx");
    }

    std::mt19937 random_;
};

std::vector<std::u16string> plainAndDottedNames() {
    std::vector<std::u16string> names;
    for (const auto* const package : {u"", u"p.", u"p.q.", u"q.", u"f.", u"C."}) {
        for (const auto* const className : {u"", u"f.", u"C."}) {
            for (const auto* const last : {u"f", u"g", u"C", u"p", u"q"}) {
                names.push_back(std::u16string(package) + className + last);
            }
        }
    }
    return names;
}

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
