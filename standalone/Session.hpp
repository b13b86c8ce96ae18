// A stand-alone host: while a session is open, the host's services answer from its installation.
//
// Threads: one opens and closes the session, while no other uses the services. In between, any thread may use them.
// Lifetime: lists that the services return by reference live as long as the session.
#pragma once

#include <memory>
#include <string>

namespace tessgen::standalone {

struct Installation;
struct SessionState;

enum class View {
    live,     // each answer reflects the disk at the time of the question
    snapshot, // all answers reflect the disk when the session opened; for resolving many names
    fixed [[deprecated("use View::snapshot")]] = snapshot,
    watched, // as live, but a folder is listed when the session opens, and again when it changed; for a long life
};

class Session {
public:
    // Opens the installation of a manifest, or of the `installation.json` in a folder. Opens the manifest, the store
    // and the search index, if it was built, once. A snapshot lists every folder of the search path now; names with
    // "/", and packages that are reached through more than one link, are read from the disk on first use. The watched
    // view holds every change that was made on this machine before the question, and opens a store anew that was
    // replaced; it is live where the system cannot watch. After a fork, one of the two processes may ask it: what the
    // system tells one, it does not tell the other. In all views a folder that cannot be read is an error of the
    // questions that need it.
    // Errors: std::runtime_error with one line for a malformed manifest, store or index, or a missing root;
    // std::logic_error when this process has an open session.
    explicit Session(const std::string& fileOrFolder, View view = View::live);
    // Opens an installation without a manifest. Not exported, since the type is internal.
    explicit Session(Installation&& installation, View view = View::live);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

private:
    std::unique_ptr<const SessionState> state_;
};

} // namespace tessgen::standalone
