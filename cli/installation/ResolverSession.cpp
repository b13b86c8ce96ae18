#include "cli/installation/ResolverSession.hpp"

#include "analysis/Answer.hpp"
#include "cli/installation/ManifestLookup.hpp"
#include "cli/output/Console.hpp"
#include "cli/recording/Recording.hpp"
#include "cli/recording/Replay.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/services/SessionState.hpp"
#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tessgen/kelwhich/ScreenerMetadataResolver.hpp"

#include <exception>
#include <memory>
#include <utility>

namespace tessgen::cli {

namespace {

// What the program and the resolver read from the session itself; the recording answers everything else.
standalone::Installation installationOf(const Replay& replay) {
    standalone::Installation installation;
    installation.root = "/"; // exists on every machine; questions about the root are answered by the recording
    installation.sourceCode = replay.head().sourceCode;
    installation.searchPath = replay.head().searchPath;
    return installation;
}

std::unique_ptr<standalone::Session> openSession(const InstallationWatch& watch, standalone::View view) {
    return std::make_unique<standalone::Session>(standalone::Installation(watch.installation()), view);
}

Collaborators realCollaborators() {
    return {std::make_unique<kelwhich::ORVAKWhichResolver>(), std::make_unique<kelwhich::ScreenerMetadataResolver>(),
            std::make_unique<kelwhich::RealFileSystem>()};
}

} // namespace

ResolverSession::ResolverSession(const Request& request, standalone::View view)
    : replay_(request.replay ? std::make_shared<const Replay>(*request.replay) : nullptr) {
    if (replay_) {
        session_ = std::make_unique<standalone::Session>(installationOf(*replay_));
    } else if (request.action == Action::batch || request.action == Action::lsp) {
        session_ = openSession(watch_.emplace(findManifest(request)), view);
    } else {
        session_ = std::make_unique<standalone::Session>(findManifest(request), view);
    }
    if (request.record) {
        recording_ = std::make_shared<Recording>(*request.record);
    }
    dropCache();
    files_ = collaborators().fileSystem;
}

ResolverSession::~ResolverSession() {
    if (session_) {
        keepUntilExit(std::move(session_));
    }
}

Collaborators ResolverSession::collaborators() const {
    return replay_ ? replayed(replay_) : recording_ ? recorded(realCollaborators(), recording_) : realCollaborators();
}

// The same composition as in kelwhich::kelwhich.
void ResolverSession::dropCache() {
    cachedBytes_ = 0;
    auto collaborators = this->collaborators();
    resolver_ = std::make_unique<const kelwhich::KELWhichResolver>(
        std::move(collaborators.which), std::move(collaborators.metadata),
        std::make_unique<kelwhich::CachedFileSystemAdaptor>(std::move(collaborators.fileSystem)));
}

void ResolverSession::boundCache(std::size_t textSize) {
    constexpr std::size_t limit = std::size_t{1} << 25U;
    constexpr std::size_t utf16 = 2; // bytes a byte; a name and the paths of its candidates may each be asked for
    cachedBytes_ += cacheEntrySize + 2 * utf16 * textSize;
    if (cachedBytes_ >= limit) {
        dropCache();
    }
}

standalone::WatchedView* ResolverSession::watched() const {
    return session_ ? standalone::currentSession().watched.get() : nullptr;
}

bool ResolverSession::takeManifestChange() {
    if (watched() == nullptr) {
        return watch_->isManifestChanged();
    }
    const bool isChanged = watched()->takeManifestChange();
    const bool wasChanged = watch_ && std::exchange(isManifestUnsure_, false) && watch_->isManifestChanged();
    return isChanged || wasChanged;
}

bool ResolverSession::isOutdated() {
    return takeManifestChange() || (watched() == nullptr && watch_->isDataReplaced());
}

void ResolverSession::refresh() {
    if (takeManifestChange()) {
        reportNote(watch_->installation().manifest + ": changed; start kelwhich batch again to use it");
    }
    if (watched() == nullptr) {
        reopen();
    }
    dropCache();
}

void ResolverSession::reopen() {
    if (watch_->isDataReplaced()) {
        session_.reset();
    }
    if (!session_) {
        session_ = openSession(*watch_, standalone::View::live); // a process can have one
        files_ = collaborators().fileSystem;
    }
}

bool ResolverSession::isMissing(const kelwhich::Explanation::Candidate& candidate) const {
    const bool isFound = candidate.source.question == kelwhich::Explanation::Source::Question::host;
    if (isFound || !analysis::isAbsoluteFile(candidate.result)) {
        return false;
    }
    try {
        return !files_->exists(candidate.result.path);
    } catch (const std::exception&) { // it cannot be looked up, or an older recording does not know
        return false;
    }
}

void ResolverSession::writeRecording() const {
    if (recording_) {
        recording_->write();
    }
}

std::string whyNotWatched() {
    const auto& reason = standalone::currentSession().notWatched;
    return reason.empty() ? ""
                          : "folders cannot be watched (" + reason + "), so the disk is searched anew for each name";
}

} // namespace tessgen::cli
