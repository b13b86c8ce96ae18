// The stand-alone host, and the library over it, while memory is out and among many threads.
#include "standalone/index/SearchIndexBuilder.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/services/SessionState.hpp"
#include "tessgen/kelwhich/kelwhich.hpp"
#include "tests/support/SupportStores.hpp"
#include "tests/sweeps/Threads.hpp"
#include "zelt/enumeration.hpp"
#ifdef KELWHICH_SWEEPS_ALLOCATIONS
#include "tests/sweeps/AllocationSweep.hpp"
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace tessgen::test {
namespace {

using standalone::Installation;
using standalone::Session;
using standalone::View;
using Texts = std::vector<std::u16string>;
using Answers = std::vector<std::vector<kelwhich::WhichResult>>;

// Files, built-ins and records of each form, on disk.
class SmallHost {
public:
    SmallHost() {
        for (const char* file : {"w/f.vk", "w/a_long_name_of_a_function.vkx", "w/@C/f.vk", "w/private/f.vk",
                                 "w/+p/+q/f.vk", "w/+p/@C/C.vk", "library/a/folder/below/the/root/f.vk", "kel/f.vk"}) {
            folder_.write(file);
        }
        for (int i = 0; i < 40; ++i) { // in folders of their own, so that the first to ask lists them
            folder_.write("w/unasked" + std::to_string(i) + "/f.vk");
        }
        folder_.write("installation.json", R"({"searchPath": ["w", "library/a/folder/below/the/root", "none"],
            "kelPath": ["kel"], "sourceCode": ["library"], "supportStore": "support.cdb",
            "searchIndex": "search.cdb", "builtins":
            [{"name": "f"}, {"name": "f", "class": "table"}, {"name": "a_long_name_of_a_built_in_function"}]})");
        standalone::buildSupportStore(
            folder_.write("records.jsonl", R"({"path": "kel/f.vk", "supportFlags": [true,false,false,false,false,false]}
{"path": "library/a/folder/below/the/root/f.vk", "redirect": true, "symbol": "a_long_name_of_a_function", "unsupportedSymbols": ["f"]}
{"path": "f", "builtin": true}
)"),
            store(), folder_.path());
        buildIndex(installation());
    }

    static standalone::IndexBuild buildIndex(const Installation& installation) {
        return standalone::buildSearchIndex(installation, installation.searchIndex.value(), later);
    }

    // Makes or removes a file that no name leads to, in a folder that most names need.
    void change() const {
        if (!std::filesystem::remove(folder_.path("w/private/another.vk"))) {
            folder_.write("w/private/another.vk");
        }
    }

    std::string store() const { return folder_.path("support.cdb"); }
    const std::string& root() const { return folder_.path(); }
    std::u16string path(const std::string& below) const { return standalone::toUTF16(folder_.path(below)).value(); }
    Installation installation() const { return standalone::readInstallation(folder_.path()); }
    Installation withoutIndex() const {
        auto installation = this->installation();
        installation.searchIndex.reset();
        return installation;
    }
    Texts names() const {
        Texts all = {u"f", u"p.q.f", u"p.C", u"C.f", u"private/f", u"nothing.like_this_one", path("w/f.vk")};
        for (int i = 0; i < 40; ++i) {
            all.push_back(standalone::toUTF16("unasked" + std::to_string(i) + "/f").value());
        }
        return all;
    }

private:
    TemporaryFolder folder_;
};

Answers answersTo(const Texts& names) {
    Answers answers;
    for (const auto& name : names) {
        answers.push_back(kelwhich::kelwhich(name));
    }
    return answers;
}

// All of several threads, each with its engine, ask one session, in several rounds, with the index and without; what
// each is answered is what one alone was answered. Where the disk changes, one of them changes it before each question.
void askFromManyThreads(const SmallHost& host, View view, bool isDiskChanging) {
    const auto names = host.names();
    const Answers expected = [&] {
        const Session session(host.withoutIndex());
        return answersTo(names);
    }();
    EXPECT_EQ(expected.front().size(), 8U); // files, built-ins and a redirect
    for (int round = 0; round < 10; ++round) {
        const Session session(round % 2 == 0 ? host.withoutIndex() : host.installation(), view);
        together([&](int number) {
            for (std::size_t i = 0; i < names.size(); ++i) {
                if (isDiskChanging && number == 0) {
                    host.change();
                }
                const auto at = (i + static_cast<std::size_t>(number)) % names.size();
                EXPECT_EQ(kelwhich::kelwhich(names[at]), expected[at]);
            }
        });
        EXPECT_TRUE(!isDiskChanging || standalone::currentSession().watched->counts().listedAgain > 5U);
    }
    tellMeetings();
}

TEST(HostSweep, AnswersManyThreadsAsItDoesOne) {
    const SmallHost host;
    for (const auto view : {View::live, View::snapshot, View::watched}) {
        askFromManyThreads(host, view, false);
    }
}

// The next to ask after a change lists the folder anew for all.
TEST(HostSweep, AnswersManyThreadsWhileWatchedFoldersChange) {
    askFromManyThreads(SmallHost(), View::watched, true);
}

TEST(HostSweep, InternsANameOnceForAllThreads) {
    for (int round = 0; round < 60; ++round) {
        std::array<zelt::internal::Interned, threadCount> names{};
        together([&](int number) {
            names.at(static_cast<std::size_t>(number)) = zelt::internal::makeInterned("name " + std::to_string(round));
        });
        EXPECT_EQ(std::count(names.begin(), names.end(), names.front()), threadCount);
    }
    tellMeetings();
}

#ifdef KELWHICH_SWEEPS_ALLOCATIONS
TEST(HostSweep, OfEveryAllocation) {
    const SmallHost host;
    const auto indexed = host.installation();
    const auto listed = host.withoutIndex();
    std::size_t points = 0;
    const auto sweep = [&points](const std::string& name, const auto& make) {
        points += sweepAllocations(name, make, [] {});
    };
    sweep("build the index", [&] { return [&] { return SmallHost::buildIndex(indexed).folders; }; });
    const auto sweepSession = [&](const Installation& installation, View view) {
        sweep("open a session", [&, view] {
            return [&, view] {
                const Session session(Installation(installation), view);
                return std::tuple(standalone::currentSession().root, standalone::currentSession().kelPath);
            };
        });
        auto names = std::vector{std::u16string(u"f"), std::u16string(u"private/f"), std::u16string(u"p.q.f"),
                                 std::u16string(u"C.f"), host.path("w/f.vk")};
        if (view
            == View::watched) { // which the system takes milliseconds to end: one name that is kept, one that is not
            names.resize(2);
        }
        for (const auto& name : names) {
            if (view == View::watched) {
                sweep("kelwhich in a session after a change", [&, view] {
                    auto session = std::make_shared<const Session>(Installation(installation), view);
                    host.change();
                    return [&name, session = std::move(session)] { return kelwhich::kelwhich(name); };
                });
            }
            sweep("kelwhich in a session", [&, view] {
                return [&name, session = std::make_shared<const Session>(Installation(installation), view)] {
                    return kelwhich::kelwhich(name);
                };
            });
        }
    };
    for (const auto view : {View::live, View::snapshot}) {
        sweepSession(listed, view);
        sweepSession(indexed, view);
    }
    sweepSession(indexed, View::watched);
    std::cout << "sweep: " << points << " failing allocations of the host\n";
    EXPECT_GT(points, 1000U);
}
#endif

} // namespace
} // namespace tessgen::test
