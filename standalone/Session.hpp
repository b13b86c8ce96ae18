// A stand-alone host: makes one installation the one that the host's services speak of.
//
// Threads: opened and closed by one thread while no other uses the services; between that, any thread.
// Lifetime: the services answer while the session lives. Lists that they hand out by reference live as long.
#pragma once

#include <memory>
#include <string>

namespace tessgen::standalone {

struct Installation;
struct SessionState;

class Session {
public:
    // Opens the installation that a manifest, or the `installation.json` of a folder, describes. Each answer of the
    // services then reflects the disk at the moment it is given; the manifest and the store are opened once.
    // Errors: std::runtime_error, one line: a manifest or a store that is not as it should be;
    // std::logic_error: this process has an open session.
    explicit Session(const std::string& fileOrFolder);
    // Opens an installation that need not come from a manifest. Not exported: the type is the host's own.
    explicit Session(Installation&& installation);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

private:
    std::unique_ptr<const SessionState> state_;
};

} // namespace tessgen::standalone
