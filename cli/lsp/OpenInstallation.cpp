#include "cli/lsp/OpenInstallation.hpp"

#include "cli/checking/SourceFiles.hpp"
#include "standalone/services/SessionState.hpp"

#include <cerrno>
#include <exception>
#include <sys/eventfd.h>
#include <system_error>
#include <utility>

namespace tessgen::cli {

OpenInstallation::~OpenInstallation() {
    if (isOpening()) {
        opening_.wait();
        try {
            finishOpening();
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): it is not open, as it is to be
        }
    }
    close();
}

void OpenInstallation::close() {
    if (session_) {
        session_->close(); // a process can have one open
        session_.reset();
    }
}

void OpenInstallation::open(const Request& request) {
    close();
    opened_ = standalone::Descriptor(eventfd(0, EFD_CLOEXEC));
    if (!opened_.isOpen()) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    opening_ = std::async(std::launch::async, [request, descriptor = opened_.get()] {
        const std::unique_ptr<const int, void (*)(const int*)> atEnd(
            &descriptor, [](const int* opened) { static_cast<void>(eventfd_write(*opened, 1)); });
        return std::make_unique<ResolverSession>(request, standalone::View::watched);
    });
}

void OpenInstallation::finishOpening() {
    auto opening = std::move(opening_);
    session_ = opening.get();
    changes_ = 0;
    overlay_.clear();
    maySurprise_ = watched() == nullptr || !watched()->watchesAll();
}

standalone::WatchedView* OpenInstallation::watched() const {
    return session_ ? session_->watched() : nullptr;
}

void OpenInstallation::setOverlay(const std::set<std::string>& files) {
    if (!session_ || files == overlay_) {
        return;
    }
    const auto& session = standalone::currentSession();
    std::set<std::string> searched;
    for (const auto& file : files) {
        searched.insert(asSearched(file, session));
    }
    session.setOverlay(std::move(searched));
    overlay_ = files;
}

int OpenInstallation::changeDescriptor() const {
    return watched() == nullptr ? -1 : watched()->descriptor();
}

bool OpenInstallation::isOutdated() {
    return session_ && session_->isOutdated();
}

bool OpenInstallation::takeChange() {
    const auto before = changes_;
    if (watched() != nullptr) {
        changes_ = watched()->changes();
    }
    if (changes_ != before) {
        maySurprise_ = !watched()->watchesAll();
    }
    return changes_ != before;
}

} // namespace tessgen::cli
