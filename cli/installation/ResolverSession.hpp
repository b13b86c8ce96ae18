// The resolver of one request: over the request's installation, recorded if the request says so, or over a recording.
//
// Threads: those of KELWhichResolver over such collaborators.
// Lifetime: answers of the disk are cached until `dropCache` or `refresh`. Unless it is closed, the installation stays
// open until the process ends, so a process has one ResolverSession.
#pragma once

#include "cli/installation/InstallationWatch.hpp"
#include "cli/options/CommandLine.hpp"
#include "standalone/Session.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace tessgen::standalone {
class WatchedView;
}

namespace tessgen::cli {

struct Collaborators;
class Recording;
class Replay;

// Lets `object` live until the process ends, for what is large and is needed to the end: the system frees its memory at
// once, while destroying it would free every node by itself. Call it once for a type: the pointer here, which tells
// leak checkers that the object is in use, is to the last one.
template <typename Object>
Object& keepUntilExit(std::unique_ptr<Object> object) {
    static Object* kept = nullptr;
    kept = object.release();
    return *kept;
}

class ResolverSession {
public:
    // Opens the request's installation or recording.
    // Errors: those of `findManifest`, Session, Recording and Replay.
    explicit ResolverSession(const Request& request, standalone::View view = standalone::View::live);
    ResolverSession(const ResolverSession&) = delete;
    ResolverSession& operator=(const ResolverSession&) = delete;
    ~ResolverSession();

    const kelwhich::KELWhichResolver& operator*() const { return *resolver_; }
    const kelwhich::KELWhichResolver* operator->() const { return resolver_.get(); }

    // Whether a candidate is a file that does not exist: only a record can lead to one. False when that is not known.
    [[nodiscard]] bool isMissing(const kelwhich::Explanation::Candidate& candidate) const;

    // Whether a file of that path counts as one of the KEL path. Errors: those of FileSystem.
    [[nodiscard]] bool isOnKELPath(const std::u16string& path) const { return files_->isOnKELPath(path); }

    // Forgets the cached answers of the disk, so that the next question asks it again.
    void dropCache();

    // Bytes of heap that an entry of a cache takes besides its texts; 136 to 180 were measured.
    static constexpr std::size_t cacheEntrySize = 180;

    // Call it after each of many names, with the bytes of the name and its answer: drops the cache, which only grows,
    // when it is large.
    void boundCache(std::size_t textSize);

    // The watched view of the open installation; null when nothing is watched.
    [[nodiscard]] standalone::WatchedView* watched() const;

    // Closes the installation, so that this process can open another one. Nothing may be asked afterwards.
    void close() { session_.reset(); }

    // For a process that lives long and opens the installation anew by itself: whether that is due, since the manifest
    // changed, or, outside the watched view, the support store or the search index was replaced; true once.
    // Errors: those of WatchedView.
    [[nodiscard]] bool isOutdated();

    // For another process that lives long, before each question: does `dropCache`, and outside the watched view, when
    // the support store or the search index was replaced, opens the installation anew with them. Its manifest is not
    // read again; that it changed is reported, once. Errors: those of Session and WatchedView; the next call tries
    // again.
    void refresh();

    [[nodiscard]] bool isRecorded() const { return recording_ != nullptr; }

    // True when a recording answers, so that the disk and the open installation say nothing about the names.
    [[nodiscard]] bool isReplayed() const { return replay_ != nullptr; }

    // Writes the recording, if the request asks for one. Call it after the last question, answered or failed.
    // Errors: those of Recording.
    void writeRecording() const;

private:
    [[nodiscard]] Collaborators collaborators() const;

    [[nodiscard]] bool takeManifestChange();
    void reopen();

    std::optional<InstallationWatch> watch_;       // in `batch` and `lsp`
    bool isManifestUnsure_ = true;                 // it may have changed after it was read and before the view was made
    std::unique_ptr<standalone::Session> session_; // none while the installation cannot be opened anew
    std::shared_ptr<const Replay> replay_;
    std::shared_ptr<Recording> recording_;
    std::unique_ptr<const kelwhich::KELWhichResolver> resolver_;
    std::unique_ptr<const kelwhich::FileSystem> files_; // not cached
    std::size_t cachedBytes_ = 0;                       // since the cache was empty, roughly
};

// Why the watched view of the open installation is live; empty when it is not.
std::string whyNotWatched();

} // namespace tessgen::cli
