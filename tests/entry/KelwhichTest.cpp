#include "tessgen/kelwhich/kelwhich.hpp"

#include "standalone/services/DataArrays.hpp"
#include "tests/support/RecordingHost.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace tessgen::test {
namespace {

using foundation::orvakdata::Array;
using standalone::makeCharArray;
using standalone::makeStringColumn;

// The whole road over the real disk and a host that records: the support-package root is asked for once a call, the
// host's own look-up each time, and the next call sees what has changed.
TEST(Kelwhich, ResolvesOverTheHostAndForgetsEverything) {
    TemporaryFolder folder;
    const auto root = std::filesystem::path(folder.path()).u16string();
    auto& host = RecordingHost::reset();
    host.root = root + u"/h";
    host.kelPath = {root + u"/s/kel"};
    host.metadata.add({u"f"}, supported(root + u"/h/kel/f.vk"));
    host.metadata.add({u"f"}, redirect(root + u"/h/f.vk", u"g"));
    host.metadata.add({u"f"}, redirect(root + u"/h/f.vk", u"g")); // resolved twice
    host.answer = [&](const RecordingHost::Evaluation& evaluation) -> std::vector<Array> {
        if (evaluation.arguments.empty()) {
            return {makeCharArray(root + u"/s")};
        }
        return {makeStringColumn({u"built-in"}), makeStringColumn({u""})};
    };
    EXPECT_EQ(kelwhich::kelwhich(u"f"), (Results{{u"g", Type::ORVAKBuiltin}, {u"f", Type::ORVAKBuiltin}}));
    EXPECT_EQ(host.evaluations.size(), 4U);

    folder.write("s/kel/f.vk", "");
    EXPECT_EQ(
        kelwhich::kelwhich(u"f"),
        (Results{{u"g", Type::ORVAKBuiltin}, {root + u"/s/kel/f.vk", Type::KELPath}, {u"f", Type::ORVAKBuiltin}}));
    EXPECT_EQ(host.evaluations.size(), 8U);

    host.metadata.add({}, supported(u"/w/2/h.vk"));
    host.answer = [](const RecordingHost::Evaluation& evaluation) -> std::vector<Array> {
        if (evaluation.arguments.empty()) {
            return {Array()};
        }
        return {makeStringColumn({u"/w/1/h.vk", u"/w/2/h.vk"}), makeStringColumn({u"", u""})};
    };
    EXPECT_EQ(kelwhich::kelwhich(u"h"), (Results{{u"/w/2/h.vk", Type::ORVAKPath}, {u"/w/1/h.vk", Type::ORVAKPath}}));

    host.answer = [](const auto&) -> std::vector<Array> { throw std::runtime_error("the host's own"); };
    EXPECT_THROW(kelwhich::kelwhich(u"f"), std::runtime_error);
}

} // namespace
} // namespace tessgen::test
