// The resolver that answers the names of one request: from the installation that the request speaks of, which may be
// recorded, or from a recording.
//
// Threads: those of KELWhichResolver over such collaborators.
// Lifetime: answers of the disk are remembered as long as this lives; the installation stays open until the process
// ends, so there is one resolver a process.
#pragma once

#include "cli/options/CommandLine.hpp"
#include "standalone/Session.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <memory>

namespace tessgen::cli {

class Recording;
class Replay;

class ResolverSession {
public:
    // Opens what the request speaks of.
    // Errors: those of `findManifest`, of Session, of Recording and of Replay.
    explicit ResolverSession(const Request& request, standalone::View view = standalone::View::live);
    ResolverSession(const ResolverSession&) = delete;
    ResolverSession& operator=(const ResolverSession&) = delete;
    ~ResolverSession() = default;

    const kelwhich::KELWhichResolver& operator*() const { return *resolver_; }
    const kelwhich::KELWhichResolver* operator->() const { return resolver_.get(); }

    // Drops what was remembered of the disk, so that it is looked at anew.
    void dropCache();

    // True when a recording answers: the disk and the open installation then say nothing about the names.
    bool isReplayed() const { return replay_ != nullptr; }

    // Writes the recording, if one is made: to be called when all was asked, whether or not it could be answered.
    // Errors: those of Recording.
    void writeRecording() const;

private:
    std::shared_ptr<const Replay> replay_;
    std::shared_ptr<Recording> recording_;
    std::unique_ptr<const kelwhich::KELWhichResolver> resolver_;
};

} // namespace tessgen::cli
