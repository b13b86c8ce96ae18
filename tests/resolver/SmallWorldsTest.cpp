// Every world of up to two records and three answers of the host, each out of a dozen forms, compared with the model.
// The model judges each form once for each list of records; a world then only puts what it judged in order.
#include "tests/support/Model.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <iostream>
#include <iterator>
#include <optional>

namespace tessgen::test {
namespace {

std::vector<SupportEntry> recordForms(const std::u16string& name) {
    auto refused = supported(u"/h/t/f.vk");
    refused.unsupportedSymbols = {u"g", name};
    auto unsupported = supported(u"/k/f.vk");
    unsupported.supportFlags = {};
    const bool isPath = name.find(u'/') != std::u16string::npos;
    return {builtin(isPath ? u"/h/t/f.vk" : name), // whose path is no path of a file
            supported(u"/k/f.vk"),
            unsupported,
            supported(u"/h/t/f.vk"),
            refused,
            supported(u"/w/f.vk"),
            supported(u"/k/private/f.vk"),
            supported(u"/w/@C/f.vk"),
            supported(u"/k/@p/+q/f.vk"),
            supported(u"/w/g.vk"),
            supported(u"/k/f.x"),
            redirect(u"/k/f.vk", u"g"),
            redirect(u"/w/h.vk", u"g")};
}

Results answerForms(const std::u16string& name) {
    Results forms = {{name, Type::ORVAKBuiltin}, {name, Type::ORVAKBuiltinMethod}};
    for (const auto* path : {u"/w/f.vk", u"/h/t/f.vk", u"/s/t/f.vk", u"/w/private/f.vk", u"/w/@C/f.vk", u"/w/@f/f.vkx",
                             u"/k/@p/+q/f.vk", u"/w/g.vk", u"/w/f.x", u"/k/f.vk"}) {
        forms.push_back({path, Type::ORVAKPath});
    }
    return forms;
}

// All lists of at most `length` of `count` forms.
std::vector<std::vector<std::size_t>> listsOf(std::size_t count, std::size_t length) {
    std::vector<std::vector<std::size_t>> lists(1);
    for (std::size_t begin = 0; length > 0; --length) {
        const auto end = lists.size();
        for (; begin < end; ++begin) {
            for (std::size_t form = 0; form < count; ++form) {
                lists.push_back(lists[begin]);
                lists.back().push_back(form);
            }
        }
    }
    return lists;
}

// What the model judges of each form for one list of records: the redirect targets' results come first, then those of
// the records and of the host, by their keys.
struct Judgements {
    struct Candidate {
        std::size_t number; // of the distinct results
        Model::Keys keys;
    };

    Judgements(World world, const std::u16string& name, const Results& forms) {
        const Model model(world, RecordingHost::instance().sourceCodeDirs);
        for (const auto& result : model.ofTargets(name)) {
            targets.push_back(numberOf(result));
        }
        const auto judged = [&](const WhichResult& result) {
            return Candidate{numberOf(result), model.keys(result, name)};
        };
        const auto own = model.gathered(name);
        std::transform(own.begin(), own.end(), std::back_inserter(records), judged);
        for (const auto& form : forms) {
            world.hostAnswers[name] = {form};
            const bool isKept = model.gathered(name).size() > own.size();
            answers.push_back(isKept ? std::optional(judged(form)) : std::nullopt);
        }
    }

    std::size_t numberOf(const WhichResult& result) {
        const auto known = std::find(distinct.begin(), distinct.end(), result);
        const auto number = static_cast<std::size_t>(known - distinct.begin());
        if (known == distinct.end()) {
            distinct.push_back(result);
        }
        return number;
    }

    // Whether the results are those of the targets, the records and these forms of answers.
    [[nodiscard]] bool agree(const Results& results, const std::vector<std::size_t>& list) const {
        auto order = records;
        for (const auto form : list) {
            if (answers[form]) {
                order.push_back(*answers[form]);
            }
        }
        std::stable_sort(order.begin(), order.end(), [](const auto& a, const auto& b) { return a.keys < b.keys; });
        auto numbers = targets;
        for (const auto& candidate : order) {
            numbers.push_back(candidate.number);
        }
        std::bitset<64> seen;
        std::erase_if(numbers, [&](std::size_t number) { return seen.test(number) || (seen.set(number), false); });
        return std::equal(results.begin(), results.end(), numbers.begin(), numbers.end(),
                          [&](const auto& result, std::size_t number) { return result == distinct[number]; });
    }

    Results distinct;
    std::vector<std::size_t> targets;
    std::vector<Candidate> records;
    std::vector<std::optional<Candidate>> answers; // by form; nothing for one that is left out
};

// `symbol` is what the records are found under.
void compareAll(const std::u16string& name, const std::u16string& symbol, std::size_t mostRecords = 2,
                std::size_t mostAnswers = 3) {
    RecordingHost::reset().sourceCodeDirs = {{u"t"}};
    const auto recorded = recordForms(name);
    const auto forms = answerForms(name);
    const auto recordLists = listsOf(recorded.size(), mostRecords);
    const auto answerLists = listsOf(forms.size(), mostAnswers);
    World world;
    world.kelFiles = {u"/k/f.vk", u"/k/private/f.vk", u"/k/@p/+q/f.vk", u"/k/f.x"};
    world.hostAnswers[u"g"] = {
        {u"g", Type::ORVAKBuiltin}, {u"/w/g.vk", Type::ORVAKPath}, {u"/w/f.vk", Type::ORVAKPath}};
    world.isRecorded = false;
    auto& answers = world.hostAnswers[name];
    const auto resolver = makeResolver(world);
    std::size_t worlds = 0;
    enum class Packages { none, without, with } const all[] = {Packages::none, Packages::without, Packages::with};
    for (const auto standIns : all) {
        world.spkgroot = standIns == Packages::none ? std::nullopt : std::optional<std::u16string>(u"/s");
        world.files = standIns == Packages::with ? std::set<std::u16string>{u"/s/t/f.vk"} : std::set<std::u16string>();
        for (const auto& recordList : recordLists) {
            world.records.clear();
            for (const auto form : recordList) {
                world.add({symbol}, recorded[form]);
            }
            answers.clear();
            const Judgements judgements(world, name, forms);
            for (const auto& answerList : answerLists) {
                answers.clear();
                for (const auto form : answerList) {
                    answers.push_back(forms[form]);
                }
                const bool isSmallest = recordList.size() < 2 && answerList.size() < 3; // asked over caches, too
                ASSERT_TRUE(
                    judgements.agree(resolver.resolve(name), answerList)
                    && (!isSmallest || judgements.agree(makeResolver(world, Over::caches).resolve(name), answerList)))
                    << "packages " << static_cast<int>(standIns) << ", records " << testing::PrintToString(recordList)
                    << ", answers " << testing::PrintToString(answerList);
            }
            worlds += answerLists.size();
        }
    }
    std::cout << "small worlds: " << worlds << " as the model says\n";
    EXPECT_GE(worlds, mostRecords == 2 ? 1000000U : 500U);
}

TEST(SmallWorlds, OfAPlainName) {
    compareAll(u"f", u"f");
}

TEST(SmallWorlds, OfADottedName) {
    compareAll(u"p.q.f", u"p.q.f");
}

TEST(SmallWorlds, OfAPath) {
    compareAll(u"/f.vk", u"f");
}

TEST(SmallWorlds, OfAPathInPackages) {
    compareAll(u"@p/+q/f.vk", u"p.q.f", 1, 1);
}

} // namespace
} // namespace tessgen::test
