#include "analysis/Baseline.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tessgen::test {
namespace {

using analysis::KnownFinding;

const std::string head = std::string(analysis::baselineHead) + "\n";

TEST(Baseline, HasALineForEachFindingSortedByBytes) {
    const std::set<KnownFinding> findings = {{"b", "n", "p", "", ""},
                                             {"a", "n", "p", "o", "u"},
                                             {"a", "n", "", "", "u"},
                                             {"a", "n", "p-", "", ""},
                                             {"a", "n", "", "", ""}};
    const auto text = analysis::baselineText(findings);
    EXPECT_EQ(text, head + "a\tn\na\tn\t\t\tu\na\tn\tp\to\tu\na\tn\tp-\nb\tn\tp\n");
    std::set<KnownFinding> read;
    for (const auto& [known, line] : analysis::readBaseline(text)) {
        read.insert(known);
    }
    EXPECT_EQ(read, findings);
    EXPECT_EQ(analysis::baselineText({}), head);
}

// Merging leaves lines that are repeated or out of order.
TEST(Baseline, IsReadFromMergedLines) {
    const auto known = analysis::readBaseline(head + "b\tn\tp\n\na\tn\tp\n" + head + "b\tn\tp");
    ASSERT_EQ(known.size(), 2U);
    EXPECT_EQ(known.at({"a", "n", "p", "", ""}), 4U);
    EXPECT_EQ(known.at({"b", "n", "p", "", ""}), 2U) << "the first of its lines";
}

TEST(Baseline, NamesTheMalformedLine) {
    const std::string expectsHead =
        "line 1: expected " + std::string(analysis::baselineHead) + ", the first line of a baseline of this version";
    const std::string fields =
        ": expected two to five fields, separated by TABs: code, name, file, other file, file of the use";
    for (const auto& [text, error] : {std::pair<std::string, std::string>{"", expectsHead},
                                      {"a\tn\tp\n", expectsHead},
                                      {"# kelwhich-baseline/2\n", expectsHead},
                                      {head + "a\tn\n<<<<<<< ours\n", "line 3" + fields},
                                      {head + "a\tn\tp\to\tu\tmore\n", "line 2" + fields}}) {
        try {
            static_cast<void>(analysis::readBaseline(text));
            ADD_FAILURE() << text;
        } catch (const std::runtime_error& thrown) {
            EXPECT_EQ(thrown.what(), error);
        }
    }
}

} // namespace
} // namespace tessgen::test
