// The installation of an editor's workspace, which is opened beside the reading of messages, since that may take long.
//
// Threads: one; opening has its own.
#pragma once

#include "cli/installation/ResolverSession.hpp"
#include "standalone/files/Descriptor.hpp"
#include "standalone/watch/WatchedView.hpp"

#include <cstdint>
#include <future>
#include <memory>
#include <set>
#include <string>

namespace tessgen::cli {

class OpenInstallation {
public:
    OpenInstallation() = default;
    OpenInstallation(const OpenInstallation&) = delete;
    OpenInstallation& operator=(const OpenInstallation&) = delete;
    ~OpenInstallation();

    // Begins to open the installation of a request; closes the one that is open. Not while one is being opened.
    // Errors: std::system_error; then none is open.
    void open(const Request& request);
    [[nodiscard]] bool isOpening() const { return opening_.valid(); }
    // Readable once it is opened, or failed to be; negative when it is not being opened.
    [[nodiscard]] int openedDescriptor() const { return isOpening() ? opened_.get() : -1; }
    // Waits until it is opened.
    // Errors: those of ResolverSession; it is then not open.
    void finishOpening();

    // Null when it is not open.
    [[nodiscard]] ResolverSession* session() const { return session_.get(); }

    // From now on these files count as there, too: as for SessionState, but links may lead to their folders. Does
    // nothing when none is open. Errors: those of SessionState.
    void setOverlay(const std::set<std::string>& files);

    // Readable when something that is watched changed; negative when nothing is watched.
    [[nodiscard]] int changeDescriptor() const;
    // Whether something that is watched changed since the last call, or since it was opened.
    // Errors: std::system_error when that cannot be found out.
    [[nodiscard]] bool takeChange();
    // Whether something that is not watched may have changed. What is watched is to be looked at first.
    [[nodiscard]] bool maySurprise() const { return maySurprise_; }
    // Whether it is to be opened anew, as for ResolverSession; true once.
    [[nodiscard]] bool isOutdated();

private:
    void close();
    [[nodiscard]] standalone::WatchedView* watched() const;

    standalone::Descriptor opened_;
    std::unique_ptr<ResolverSession> session_;
    std::future<std::unique_ptr<ResolverSession>> opening_;
    std::set<std::string> overlay_; // as it was given
    std::uint64_t changes_ = 0;     // that are known
    bool maySurprise_ = true;
};

} // namespace tessgen::cli
