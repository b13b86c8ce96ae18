// A server of the Language Server Protocol 3.17 for one editor: the life cycle, the order and the errors of messages.
//
// A request that needs the installation waits until that is open, and so does every message after it; a cancellation
// is heeded at once.
// Threads: one.
#pragma once

#include "cli/lsp/Diagnostics.hpp"
#include "cli/lsp/Documents.hpp"
#include "cli/lsp/Frames.hpp"
#include "cli/lsp/JsonRpc.hpp"
#include "cli/lsp/OpenInstallation.hpp"
#include "cli/lsp/OpeningProgress.hpp"
#include "standalone/files/Descriptor.hpp"

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tessgen::cli {

class Server {
public:
    // `request` is the one of the command line.
    Server(Request request, Send send);

    // Takes a message, or answers that it is malformed.
    void take(const Frame& frame);
    // Does what is due, and handles the message that was taken first. False when nothing can be done before there is
    // another message, one of the descriptors is readable, or so many milliseconds have passed (-1: for ever).
    bool work();
    [[nodiscard]] int openedDescriptor() const { return installation_.openedDescriptor(); }
    [[nodiscard]] int changeDescriptor() const { return installation_.changeDescriptor(); }
    [[nodiscard]] int editorDescriptor() const { return editor_.get(); }
    [[nodiscard]] int milliseconds() const { return progress_.milliseconds(); }

    // How many messages were taken and not handled yet. When `work` returned false, they wait for the installation.
    [[nodiscard]] std::size_t waiting() const { return messages_.size(); }

    // Whether the editor said that it ends, or has ended; and whether it asked to shut down before.
    [[nodiscard]] bool isOver() const { return isOver_; }
    [[nodiscard]] bool wasShutDown() const { return state_ == State::shutDown; }

private:
    enum class State { created, running, shutDown };

    void handle(const Message& message);
    nlohmann::ordered_json answer(const Message& message);
    void notify(const Message& message);
    nlohmann::ordered_json initialize(const nlohmann::json& params);
    void watchEditor(pid_t process);
    void cancel(const nlohmann::json& params);
    bool canHandle(const Message& message);

    void attempt(const std::function<void()>& action);
    void open();
    void finishOpening();
    ResolverSession& refreshed();
    void noteChange();
    void noteSaving();
    void takeChanges();
    bool updateDiagnostics();

    Request request_; // of the command line, with the settings of the editor
    const Send send_;
    State state_ = State::created;
    bool isOver_ = false;
    std::deque<Message> messages_;

    bool prefersMarkdown_ = false;  // the editor
    standalone::Descriptor editor_; // of the editor's process: readable when that has ended
    Documents documents_;
    Diagnostics diagnostics_;

    OpenInstallation installation_;
    OpeningProgress progress_;
    std::string failure_;      // what was shown last: why it could not be opened, if it is not open
    bool mayOpenAgain_ = true; // for the next request
    std::optional<std::vector<std::string>> names_; // every name of the installation, until something changes
    bool areDocumentsNew_ = false;                  // opened, changed or closed since the diagnostics were updated
    bool mayHaveChanged_ = false;                   // something that matters to them, since then
};

} // namespace tessgen::cli
