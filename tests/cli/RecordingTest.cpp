#include "cli/recording/Recording.hpp"
#include "cli/recording/Replay.hpp"
#include "standalone/Session.hpp"
#include "standalone/manifest/Installation.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/support/World.hpp"

#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tessgen::test {
namespace {

// The line that a recording would have for the call's answer, or the message that it throws.
template <typename Call>
std::string answerText(const cli::Question& question, Call call) {
    try {
        return cli::answerLine(question, call());
    } catch (const std::exception& error) {
        return error.what();
    }
}

std::vector<std::string> answersToEachQuestion(const cli::Collaborators& collaborators, const std::u16string& text) {
    using cli::QueryKind;
    return {answerText({QueryKind::which, text}, [&] { return collaborators.which->which(text); }),
            answerText({QueryKind::findByPath, text}, [&] { return collaborators.metadata->findByPath(text); }),
            answerText({QueryKind::findBySymbol, text}, [&] { return collaborators.metadata->findBySymbol(text); }),
            answerText({QueryKind::exists, text}, [&] { return collaborators.fileSystem->exists(text); }),
            answerText({QueryKind::orvakroot, {}}, [&] { return collaborators.fileSystem->orvakroot(); }),
            answerText({QueryKind::spkgroot, {}}, [&] { return collaborators.fileSystem->spkgroot(); }),
            answerText({QueryKind::isOnKELPath, text}, [&] { return collaborators.fileSystem->isOnKELPath(text); })};
}

// Texts that are not Unicode, answers that change and change back, errors that are not UTF-8, interleaved questions.
TEST(Recording, ReplaysTheAnswersOfEachQuestionInOrder) {
    const std::u16string odd = u"/\xD800\xD800x\xDC00/\u202E\"[55296]\\";
    World world;
    const std::vector<std::function<void()>> changes{
        [] {},
        [] {},
        [&] {
            world.hostAnswers[u"f"] = {{odd, Type::ORVAKPath}, {u"f", Type::ORVAKBuiltinMethod}};
            world.add({u"f", odd}, {{true, false, false, false, false, true}, false, true, odd, odd, {u"f", odd}});
            world.add({odd}, {{}, true, false, u"", u"", {}});
            world.files = {odd};
            world.kelFiles = {u"f"};
            world.spkgroot = odd;
        },
        [] {},
        [&] { Faults::arm(2, std::make_exception_ptr(std::runtime_error("/\xFF\xC3: cannot be read\nat all"))); },
        [&] {
            Faults::disarm();
            world = World();
        },
    };
    const auto askEverything = [&](const cli::Collaborators& collaborators) {
        std::vector<std::string> all;
        for (const auto& change : changes) {
            change();
            for (const auto& text : {std::u16string(u"f"), odd, std::u16string(1, u'\0')}) {
                const auto lines = answersToEachQuestion(collaborators, text);
                all.insert(all.end(), lines.begin(), lines.end());
            }
        }
        return all;
    };

    const TemporaryFolder folder;
    const auto file = folder.path("recording.jsonl");
    standalone::Installation installation;
    installation.root = "/";
    installation.sourceCode = {{"signal", "gr\u00F6\u00DFe"}, {}};
    installation.searchPath = {"/\u200B"};
    const standalone::Session session(std::move(installation));
    const auto recording = std::make_shared<cli::Recording>(file);
    const auto expected = askEverything(
        cli::recorded({std::make_unique<FakeWhichResolver>(world), std::make_unique<FakeMetadataResolver>(world),
                       std::make_unique<FakeFileSystem>(world)},
                      recording));
    EXPECT_FALSE(std::filesystem::exists(file));
    recording->write();

    const auto replay = std::make_shared<const cli::Replay>(file);
    EXPECT_EQ(replay->head(), (cli::RecordingHead{{{"signal", "gr\u00F6\u00DFe"}, {}}, {"/\u200B"}}));
    EXPECT_EQ(askEverything(cli::replayed(replay)), expected);
}

} // namespace
} // namespace tessgen::test
