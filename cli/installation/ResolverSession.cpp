#include "cli/installation/ResolverSession.hpp"

#include "cli/installation/ManifestLookup.hpp"
#include "cli/recording/Recording.hpp"
#include "cli/recording/Replay.hpp"
#include "standalone/manifest/Installation.hpp"
#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"

#include <memory>
#include <utility>

namespace tessgen::cli {

namespace {

// What is asked of a session itself; all else is answered by the recording.
standalone::Installation installationOf(const Replay& replay) {
    standalone::Installation installation;
    installation.root = "/"; // a folder on every machine; the root itself is a question that was recorded
    installation.sourceCode = replay.head().sourceCode;
    installation.searchPath = replay.head().searchPath;
    return installation;
}

// Never closed: the process ends when the request is answered, and gives all of it back at once.
void openSession(const Request& request, const Replay* replay, standalone::View view) {
    [[maybe_unused]] static const standalone::Session* session = nullptr; // so that it counts as no leak
    session = replay != nullptr ? new standalone::Session(installationOf(*replay))
                                : new standalone::Session(findManifest(request), view);
}

Collaborators realCollaborators() {
    return {std::make_unique<kelwhich::ORVAKWhichResolver>(), std::make_unique<kelwhich::ScreenerMetadataResolver>(),
            std::make_unique<kelwhich::RealFileSystem>()};
}

} // namespace

ResolverSession::ResolverSession(const Request& request, standalone::View view)
    : replay_(request.replay ? std::make_shared<const Replay>(*request.replay) : nullptr) {
    openSession(request, replay_.get(), view);
    if (request.record) {
        recording_ = std::make_shared<Recording>(*request.record);
    }
    dropCache();
}

// As kelwhich::kelwhich puts them together.
void ResolverSession::dropCache() {
    Collaborators of = replay_      ? replayed(replay_)
                       : recording_ ? recorded(realCollaborators(), recording_)
                                    : realCollaborators();
    resolver_ = std::make_unique<const kelwhich::KELWhichResolver>(
        std::move(of.which), std::move(of.metadata),
        std::make_unique<kelwhich::CachedFileSystemAdaptor>(std::move(of.fileSystem)));
}

void ResolverSession::writeRecording() const {
    if (recording_) {
        recording_->write();
    }
}

} // namespace tessgen::cli
