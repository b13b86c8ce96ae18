#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tessgen::test {
namespace {

TEST(Classification, UserFilesLieOutsideTheHostsFoldersAndSupportPackages) {
    auto& host = RecordingHost::reset();
    host.sourceCodeDirs = {{u"tb"}, {u"lib", u"base"}};
    World world;
    world.spkgroot = u"/s";
    const auto resolver = makeResolver(world);
    const std::pair<std::u16string, bool> cases[] = {
        {u"/w/f.vk", true},     {u"/h/f.vk", true},
        {u"/h/tb/f.vk", false}, {u"/h/tbx/f.vk", false},
        {u"/h/lib/f.vk", true}, {u"/h/tb", false},
        {u"/h/t", true},        {u"/s/f.vk", false},
        {u"/sx/f.vk", false},   {u"/h/lib/base/f.vk", false},
        {u"f.vk", true},
    };
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(resolver.isUserResult({path, Type::ORVAKPath}), expected) << testing::PrintToString(path);
    }
    host.sourceCodeDirs = {{}};
    world.spkgroot = std::nullopt;
    EXPECT_TRUE(resolver.isUserResult({u"/s/f.vk", Type::ORVAKPath})); // asked anew
    EXPECT_EQ(host.sourceCodeDirsAsked, 1);                            // asked once
    EXPECT_FALSE(makeResolver(world).isUserResult({u"/h/f.vk", Type::ORVAKPath}));
}

TEST(Classification, AsksForTheHostsFoldersOnceAndOnlyWhenNeeded) {
    auto& host = RecordingHost::reset();
    host.sourceCodeDirs = {{u"tb"}, {u"lib"}};
    World world;
    const auto resolver = makeResolver(world);
    for (const auto type : {Type::KELPath, Type::KELBuiltin, Type::ORVAKBuiltin, Type::ORVAKBuiltinMethod}) {
        EXPECT_FALSE(resolver.isUserResult({u"/w/f.vk", type}));
    }
    EXPECT_EQ(world.questions(), Texts());
    EXPECT_EQ(host.sourceCodeDirsAsked, 0);

    EXPECT_TRUE(resolver.isUserResult({u"/w/f.vk", Type::ORVAKPath}));
    EXPECT_FALSE(resolver.isUserResult({u"/h/tb/f.vk", Type::ORVAKPath}));
    EXPECT_EQ(world.questions(), (Texts{u"orvakroot", u"orvakroot", u"spkgroot", u"spkgroot"}));
}

TEST(Classification, SupportNeedsARecordThatDoesNotExcludeTheName) {
    World world;
    auto entry = supported(u"/w/f.vk");
    entry.unsupportedSymbols = {u"g", u"h"};
    world.add({u"f"}, entry);
    auto unsupported = entry;
    unsupported.path = u"/w/u.vk";
    unsupported.supportFlags = {};
    world.add({u"f"}, unsupported);
    const auto resolver = makeResolver(world);
    struct Case {
        WhichResult result;
        std::u16string name;
        bool expected;
        bool asks;
    };
    const Case cases[] = {
        {{u"/w/f.vk", Type::ORVAKPath}, u"f", true, true},
        {{u"/w/f.vk", Type::KELPath}, u"f", true, true},
        {{u"/w/f.vk", Type::KELPath}, u"h", false, true},
        {{u"/w/f.vk", Type::KELPath}, u"hh", true, true},
        {{u"/w/f.vk", Type::KELPath}, u"H", true, true},
        {{u"/w/u.vk", Type::ORVAKPath}, u"f", false, true},
        {{u"/w/none.vk", Type::KELPath}, u"f", false, true},
        {{u"g", Type::KELBuiltin}, u"g", true, false},
        {{u"/w/f.vk", Type::ORVAKBuiltin}, u"f", false, false},
        {{u"/w/f.vk", Type::ORVAKBuiltinMethod}, u"f", false, false},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(resolver.isSupportedForCodegen(test.result, test.name), test.expected);
        EXPECT_EQ(!world.questions().empty(), test.asks) << testing::PrintToString(test.result.path);
    }
}

} // namespace
} // namespace tessgen::test
