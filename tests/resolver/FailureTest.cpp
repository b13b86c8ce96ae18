#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <exception>
#include <stdexcept>

namespace tessgen::test {
namespace {

// Lets each question of one `resolve` fail in turn: the very same object arrives, nothing more is asked, and the same
// resolver then answers as if nothing had happened.
TEST(Failures, OfCollaboratorsPassThroughAndLeaveNothingBehind) {
    RecordingHost::reset().sourceCodeDirs = {{u"tb"}};
    World world;
    world.spkgroot = u"/s";
    world.files = {u"/s/tb/f.vk"};
    world.kelFiles = {u"/k/f.vk"};
    world.add({u"f"}, redirect(u"/h/tb/f.vk", u"g"));
    world.add({u"f"}, supported(u"/k/f.vk"));
    world.add({u"g"}, builtin(u"g"));
    world.hostAnswers[u"f"] = {{u"/w/f.vk", Type::ORVAKPath}, {u"f", Type::ORVAKBuiltin}};
    const auto expected = makeResolver(world).resolve(u"f");
    ASSERT_EQ(expected.size(), 4U);
    const auto questions = world.questions().size() - 3; // without the three destructions
    ASSERT_GT(questions, 30U);

    world.failure = std::make_exception_ptr(std::runtime_error("the collaborator's own"));
    for (std::size_t k = 0; k < questions; ++k) {
        const auto resolver = makeResolver(world);
#ifdef __SANITIZE_THREAD__ // its std::call_once never returns after a throw
        resolver.isUserResult({u"/w/f.vk", Type::ORVAKPath});
#endif
        world.questions();
        world.failing = k;
        try {
            resolver.resolve(u"f");
            FAIL() << "question " << k << " did not fail";
        } catch (const std::runtime_error&) {
            EXPECT_EQ(std::current_exception(), world.failure);
        }
        EXPECT_EQ(world.questions().size(), k + 1);
        world.failing.reset();
        EXPECT_EQ(resolver.resolve(u"f"), expected) << "after question " << k;
    }
}

} // namespace
} // namespace tessgen::test
