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

// What a collaborator says, as one text: the line that a recording would have, or what it threw.
template <typename AskIt>
std::string said(const cli::Question& question, AskIt ask) {
    try {
        return cli::answerLine(question, ask());
    } catch (const std::exception& error) {
        return error.what();
    }
}

std::vector<std::string> saidToEachQuestion(const cli::Collaborators& of, const std::u16string& text) {
    using cli::QueryKind;
    return {said({QueryKind::which, text}, [&] { return of.which->which(text); }),
            said({QueryKind::findByPath, text}, [&] { return of.metadata->findByPath(text); }),
            said({QueryKind::findBySymbol, text}, [&] { return of.metadata->findBySymbol(text); }),
            said({QueryKind::exists, text}, [&] { return of.fileSystem->exists(text); }),
            said({QueryKind::orvakroot, {}}, [&] { return of.fileSystem->orvakroot(); }),
            said({QueryKind::spkgroot, {}}, [&] { return of.fileSystem->spkgroot(); }),
            said({QueryKind::isOnKELPath, text}, [&] { return of.fileSystem->isOnKELPath(text); })};
}

// Texts that are no Unicode, answers that change and change back, errors that are no UTF-8, questions in between.
TEST(Recording, ReplaysWhatWasSaidToEachQuestionInItsOrder) {
    const std::u16string odd = u"/\xD800\xD800x\xDC00/\u202E\"[55296]\\";
    World world;
    const auto tell = [&](const cli::Collaborators& of) {
        std::vector<std::string> all;
        const auto everything = [&] {
            for (const auto& text : {std::u16string(u"f"), odd, std::u16string(1, u'\0')}) {
                for (const auto& line : saidToEachQuestion(of, text)) {
                    all.push_back(line);
                }
            }
        };
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
            [&] {
                world.failing = world.asked.size() + 2;
                world.failure = std::make_exception_ptr(std::runtime_error("/\xFF\xC3: cannot be read\nat all"));
            },
            [&] { world = World(); },
        };
        for (const auto& change : changes) {
            change();
            everything();
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
    const auto expected =
        tell(cli::recorded({std::make_unique<FakeWhichResolver>(world), std::make_unique<FakeMetadataResolver>(world),
                            std::make_unique<FakeFileSystem>(world)},
                           recording));
    EXPECT_FALSE(std::filesystem::exists(file));
    recording->write();

    const auto replay = std::make_shared<const cli::Replay>(file);
    EXPECT_EQ(replay->head(), (cli::RecordingHead{{{"signal", "gr\u00F6\u00DFe"}, {}}, {"/\u200B"}}));
    EXPECT_EQ(tell(cli::replayed(replay)), expected);
    // The last answer of a question holds from then on.
    const auto first = saidToEachQuestion(cli::replayed(replay), u"f");
    EXPECT_EQ(first, std::vector<std::string>(expected.end() - 21, expected.end() - 14));
}

} // namespace
} // namespace tessgen::test
