#include "cli/lsp/Server.hpp"

#include "cli/lsp/Client.hpp"
#include "cli/lsp/Methods.hpp"
#include "cli/output/Console.hpp"
#include "standalone/files/FileErrors.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <new>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace tessgen::cli {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

ordered_json capabilities(PositionEncoding encoding) {
    return {{"positionEncoding", encoding == PositionEncoding::utf8 ? "utf-8" : "utf-16"},
            {"textDocumentSync", {{"openClose", true}, {"change", 2}, {"save", true}}}, // 2: parts
            {"hoverProvider", true},
            {"completionProvider", {{"triggerCharacters", ordered_json::array({"."})}}},
            {"declarationProvider", true},
            {"definitionProvider", true},
            {"workspaceSymbolProvider", true},
            {"executeCommandProvider", {{"commands", ordered_json::array({explainCommandName})}}}};
}

bool isReadable(int descriptor) {
    pollfd polled{descriptor, POLLIN, 0};
    return descriptor >= 0 && poll(&polled, 1, 0) > 0;
}

} // namespace

Server::Server(Request request, Send send)
    : request_(std::move(request)), send_(std::move(send)), diagnostics_(send_), progress_(send_) {}

void Server::take(const Frame& frame) {
    json id = nullptr;
    try {
        if (!frame.problem.empty()) {
            throw RPCError(RPCErrorCode::parseError, std::string(frame.problem));
        }
        auto message = parseMessage(frame.body, id);
        if (message.method.empty()) {
            progress_.takeResponse(message);
        } else if (message.method == "$/cancelRequest" && !message.isRequest()) {
            cancel(message.params);
        } else {
            messages_.push_back(std::move(message));
        }
    } catch (const RPCError& error) {
        send_(errorResponse(id, error.code, error.what()));
    }
}

void Server::cancel(const json& params) {
    const auto* const id = findAt(params, {"id"});
    const auto found = std::find_if(messages_.begin(), messages_.end(), [id](const Message& message) {
        return message.isRequest() && id != nullptr && message.id == *id;
    });
    if (found != messages_.end()) {
        messages_.erase(found);
        send_(errorResponse(*id, RPCErrorCode::requestCancelled, "cancelled"));
    }
}

bool Server::work() {
    isOver_ = isOver_ || isReadable(editorDescriptor());
    if (installation_.isOpening()) {
        isReadable(openedDescriptor()) ? finishOpening() : progress_.update();
    }
    attempt([this] { takeChanges(); });
    if (isOver_) {
        return false;
    }
    if (!messages_.empty() && canHandle(messages_.front())) {
        const auto message = std::move(messages_.front());
        messages_.pop_front();
        handle(message);
        return true;
    }
    return messages_.empty() && state_ == State::running && updateDiagnostics();
}

// Whether nothing keeps the message waiting. Begins to open the installation when that is what keeps it.
bool Server::canHandle(const Message& message) {
    const bool needsInstallation =
        state_ == State::running && message.isRequest() && findMethod(message.method) != nullptr;
    if (!needsInstallation || installation_.session() != nullptr) {
        return true;
    }
    if (!installation_.isOpening() && std::exchange(mayOpenAgain_, false)) {
        open();
    }
    return !installation_.isOpening();
}

void Server::handle(const Message& message) {
    if (!message.isRequest()) {
        notify(message);
        return;
    }
    ordered_json response;
    try {
        response = resultResponse(message.id, answer(message));
    } catch (const RPCError& error) {
        response = errorResponse(message.id, error.code, error.what());
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        response = errorResponse(message.id, RPCErrorCode::requestFailed, errorMessage(error));
    }
    send_(response);
}

ordered_json Server::answer(const Message& message) {
    const bool isInitialize = message.method == "initialize";
    if (state_ == State::created && !isInitialize) {
        throw RPCError(RPCErrorCode::notInitialized, "the first request is initialize");
    }
    if (isInitialize && state_ == State::created) {
        return initialize(message.params);
    }
    if (isInitialize || state_ == State::shutDown) {
        throw RPCError(RPCErrorCode::invalidRequest, isInitialize ? "initialize comes once" : "after shutdown");
    }
    if (message.method == "shutdown") {
        state_ = State::shutDown;
        return nullptr;
    }
    const auto method = findMethod(message.method);
    if (method == nullptr) {
        throw RPCError(RPCErrorCode::methodNotFound, message.method + ": unknown method");
    }
    auto& resolver = refreshed();
    return method({message.params, documents_, request_, resolver, names_, prefersMarkdown_});
}

void Server::notify(const Message& message) {
    const auto& method = message.method;
    if (method == "exit") {
        isOver_ = true;
    }
    if (state_ != State::running) {
        return;
    }
    try {
        areDocumentsNew_ = areDocumentsNew_ || method.starts_with("textDocument/did");
        if (method == "initialized") {
            open();
        } else if (method == "textDocument/didOpen") {
            documents_.didOpen(message.params);
        } else if (method == "textDocument/didChange") {
            documents_.didChange(message.params);
        } else if (method == "textDocument/didClose") {
            documents_.didClose(message.params);
            diagnostics_.clearClosed(documents_);
        } else if (method == "textDocument/didSave") {
            noteSaving();
            documents_.didSave(message.params);
        }
    } catch (const RPCError& error) { // a notification is not answered
        send_(loggedMessage(MessageType::error, fmt::format("{}: {}", method, error.what())));
    }
}

ordered_json Server::initialize(const json& params) {
    auto client = readClient(params);
    const auto& folder = client.rootFolder;
    if (folder && chdir(folder->c_str()) != 0) { // relative paths are meant there
        throw standalone::DiskError(errno, *folder);
    }
    documents_.encoding = client.encoding;
    documents_.pattern = std::move(client.pattern);
    prefersMarkdown_ = client.prefersMarkdown;
    progress_.isWanted = client.showsProgress;
    diagnostics_.showsRelated = client.showsRelated;
    if (client.manifest) {
        request_.installation = std::move(client.manifest);
    }
    if (client.process) {
        watchEditor(*client.process);
    }
    state_ = State::running;
    return {{"capabilities", capabilities(documents_.encoding)},
            {"serverInfo", {{"name", "kelwhich"}, {"version", KELWHICH_VERSION}}}};
}

void Server::watchEditor(pid_t process) {
    editor_ = standalone::Descriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
    const bool hasEnded = !editor_.isOpen() && errno == ESRCH; // after other errors, only standard input tells
    isOver_ = isOver_ || hasEnded;
}

// Does what no request waits for. Its failure is shown, but not twice in a row.
void Server::attempt(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        if (auto why = errorMessage(error); why != std::exchange(failure_, why)) {
            send_(shownMessage(MessageType::error, why));
        }
    }
}

// Begins to open the installation, unless that was begun and has not ended.
void Server::open() {
    if (!installation_.isOpening()) {
        attempt([this] {
            installation_.open(request_);
            progress_.begin();
        });
    }
}

void Server::finishOpening() {
    attempt([this] {
        installation_.finishOpening();
        failure_.clear();
        noteChange();
        areDocumentsNew_ = true;
        if (const auto why = whyNotWatched(); !why.empty()) {
            send_(loggedMessage(MessageType::info, why));
        }
    });
    progress_.end();
}

// The installation as it is now. Errors: RPCError when it could not be opened; the next request tries again.
ResolverSession& Server::refreshed() {
    auto* const session = installation_.session();
    if (session == nullptr) {
        mayOpenAgain_ = true;
        throw RPCError(RPCErrorCode::requestFailed, failure_);
    }
    session->dropCache();
    if (installation_.maySurprise()) {
        noteChange();
    }
    return *session;
}

void Server::noteChange() {
    names_.reset();
    mayHaveChanged_ = true;
}

// The editor saves what is not watched, too; perhaps a manifest that can now be opened.
void Server::noteSaving() {
    mayHaveChanged_ = true;
    if (installation_.session() == nullptr) {
        open();
    }
}

// Of what is watched, and documents that are not saved yet. A manifest that changed is read anew.
void Server::takeChanges() {
    if (installation_.isOutdated()) {
        open();
        return;
    }
    if (areDocumentsNew_) {
        installation_.setOverlay(documents_.unsavedFiles());
    }
    if (installation_.takeChange()) {
        noteChange();
    }
}

// Whether there was something to do. Meanwhile something may have changed.
bool Server::updateDiagnostics() {
    const bool checksAll = mayHaveChanged_;
    if (installation_.session() == nullptr || !(checksAll || areDocumentsNew_)) {
        return false;
    }
    mayHaveChanged_ = areDocumentsNew_ = false;
    installation_.session()->dropCache();
    diagnostics_.update(documents_, *installation_.session(), !checksAll);
    return true;
}

} // namespace tessgen::cli
