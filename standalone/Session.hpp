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

enum class View {
    live,     // each answer reflects the disk at the moment it is given
    snapshot, // all answers reflect the disk at the moment the session opened; for answering many names
    fixed [[deprecated("use View::snapshot")]] = snapshot,
};

class Session {
public:
    // Opens the installation that a manifest, or the `installation.json` of a folder, describes. The manifest, the
    // store and the search index, if it was built, are opened once. A snapshot lists every folder of the search path
    // now; names with "/", and packages that are reached through more than one link, are looked at when they are first
    // asked for. A folder that cannot be read is an error of the questions that need it, in both views.
    // Errors: std::runtime_error, one line: a manifest, a store or an index that is not as it should be;
    // std::logic_error: this process has an open session.
    explicit Session(const std::string& fileOrFolder, View view = View::live);
    // Opens an installation that need not come from a manifest. Not exported: the type is the host's own.
    explicit Session(Installation&& installation, View view = View::live);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

private:
    std::unique_ptr<const SessionState> state_;
};

} // namespace tessgen::standalone
