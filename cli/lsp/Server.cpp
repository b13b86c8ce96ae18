#include "cli/lsp/Server.hpp"

#include "cli/lsp/Methods.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/FileURI.hpp"
#include "standalone/files/FileErrors.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <exception>
#include <new>
#include <poll.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tessgen::cli {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr const char* progressToken = "kelwhich/open";
constexpr int errorMessageType = 1; // of window/showMessage and window/logMessage
constexpr int infoMessageType = 3;

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

bool isTrue(const json* value) {
    return value != nullptr && value->is_boolean() && value->get<bool>();
}

// Whether a list of texts has this one.
bool hasText(const json* list, std::string_view text) {
    return list != nullptr && list->is_array() && std::find(list->begin(), list->end(), text) != list->end();
}

// The text at the end of a path of keys, unless it is empty.
std::optional<std::string> textFrom(const json& params, std::initializer_list<std::string_view> keys) {
    const auto* const value = findAt(params, keys);
    const bool isText = value != nullptr && value->is_string() && !value->get_ref<const std::string&>().empty();
    return isText ? std::optional(value->get<std::string>()) : std::nullopt;
}

// The root folder of the workspace, if it has one on this machine.
std::optional<std::string> rootFolderOf(const json& params) {
    auto uri = textFrom(params, {"rootUri"});
    const auto* const folders = findAt(params, {"workspaceFolders"});
    if (folders != nullptr && folders->is_array() && !folders->empty()) {
        uri = textFrom(folders->front(), {"uri"});
    }
    return uri ? pathOfURI(*uri) : textFrom(params, {"rootPath"});
}

// Readable when the process has ended; not open when that cannot be told.
standalone::Descriptor watchProcess(const json* id) {
    const bool isId = id != nullptr && id->is_number_unsigned() && id->get<std::uint64_t>() <= INT32_MAX;
    return standalone::Descriptor(isId ? static_cast<int>(syscall(SYS_pidfd_open, id->get<pid_t>(), 0)) : -1);
}

bool isReadable(int descriptor) {
    pollfd polled{descriptor, POLLIN, 0};
    return descriptor >= 0 && poll(&polled, 1, 0) > 0;
}

} // namespace

Server::Server(Request request, Send send)
    : request_(std::move(request)), send_(std::move(send)), diagnostics_([this](ordered_json params) {
          send_(notification("textDocument/publishDiagnostics", std::move(params)));
      }) {}

void Server::take(const Frame& frame) {
    json id = nullptr;
    try {
        if (!frame.problem.empty()) {
            throw RPCError(RPCErrorCode::parseError, std::string(frame.problem));
        }
        auto message = parseMessage(frame.body, id);
        if (message.method.empty()) {
            takeResponse(message);
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
        isReadable(openedDescriptor()) ? finishOpening() : showProgress();
    }
    takeChanges();
    if (isOver_) {
        return false;
    }
    if (!messages_.empty() && canHandle(messages_.front())) {
        const auto message = std::move(messages_.front());
        messages_.pop_front();
        handle(message);
        return true;
    }
    if (messages_.empty() && state_ == State::running) {
        updateDiagnostics();
    }
    return false;
}

int Server::milliseconds() const {
    if (!installation_.isOpening() || !takesProgress_ || progress_ != Progress::none) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(progressAt_ - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(0, left.count()));
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
    return method({message.params, documents_, request_, resolver, names_, takesMarkdown_});
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
        } else if (method == "textDocument/didSave") {
            mayHaveChanged_ = true; // the editor saves what is not watched, too
        }
    } catch (const RPCError& error) { // a notification is not answered
        send_(notification("window/logMessage", {{"type", errorMessageType},
                                                 {"message", forJSON(fmt::format("{}: {}", method, error.what()))}}));
    }
}

ordered_json Server::initialize(const json& params) {
    readClient(params);
    const auto folder = rootFolderOf(params);
    if (folder && chdir(folder->c_str()) != 0) { // relative paths are meant there
        throw standalone::DiskError(errno, *folder);
    }
    state_ = State::running;
    return {{"capabilities", capabilities(documents_.encoding)},
            {"serverInfo", {{"name", "kelwhich"}, {"version", KELWHICH_VERSION}}}};
}

// What the client can do, and its settings.
void Server::readClient(const json& params) {
    if (hasText(findAt(params, {"capabilities", "general", "positionEncodings"}), "utf-8")) {
        documents_.encoding = PositionEncoding::utf8;
    }
    takesMarkdown_ = hasText(findAt(params, {"capabilities", "textDocument", "hover", "contentFormat"}), "markdown");
    takesProgress_ = isTrue(findAt(params, {"capabilities", "window", "workDoneProgress"}));
    diagnostics_.showsRelated =
        isTrue(findAt(params, {"capabilities", "textDocument", "publishDiagnostics", "relatedInformation"}));
    editor_ = watchProcess(findAt(params, {"processId"}));
    if (const auto manifest = textFrom(params, {"initializationOptions", "manifest"})) {
        request_.installation = *manifest;
    }
    if (const auto pattern = textFrom(params, {"initializationOptions", "namePattern"})) {
        try {
            documents_.pattern = NamePattern(*pattern);
        } catch (const std::runtime_error& error) {
            throw RPCError(RPCErrorCode::invalidParams, error.what());
        }
    }
}

void Server::open() {
    progressAt_ = Clock::now() + environmentMilliseconds("KELWHICH_PROGRESS_MS", std::chrono::milliseconds(500));
    progress_ = Progress::none;
    installation_.open(request_);
}

void Server::finishOpening() {
    try {
        installation_.finishOpening();
        failure_.clear();
        noteChange();
        areDocumentsNew_ = true;
        if (const auto why = whyNotWatched(); !why.empty()) {
            send_(notification("window/logMessage", {{"type", infoMessageType}, {"message", forJSON(why)}}));
        }
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        if (auto why = errorMessage(error); why != std::exchange(failure_, why)) {
            send_(notification("window/showMessage", {{"type", errorMessageType}, {"message", forJSON(why)}}));
        }
    }
    if (progress_ == Progress::shown) {
        sendProgress({{"kind", "end"}});
    }
}

void Server::showProgress() {
    if (takesProgress_ && progress_ == Progress::none && Clock::now() >= progressAt_) {
        progress_ = Progress::asked;
        send_(request(progressToken, "window/workDoneProgress/create", {{"token", progressToken}}));
    }
}

void Server::takeResponse(const Message& message) {
    if (message.id == progressToken && progress_ == Progress::asked && !message.isError && installation_.isOpening()) {
        progress_ = Progress::shown;
        sendProgress({{"kind", "begin"}, {"title", "kelwhich opens the installation"}});
    }
}

void Server::sendProgress(ordered_json value) {
    send_(notification("$/progress", {{"token", progressToken}, {"value", std::move(value)}}));
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

// Of what is watched, and documents that are not saved yet. A manifest that changed is read anew.
void Server::takeChanges() {
    if (installation_.isOutdated()) {
        open();
        return;
    }
    if (installation_.session() != nullptr && areDocumentsNew_) {
        installation_.setOverlay(documents_.unsavedFiles());
    }
    if (installation_.takeChange()) {
        noteChange();
    }
}

void Server::updateDiagnostics() {
    const bool checksAll = mayHaveChanged_;
    if (installation_.session() == nullptr || !(checksAll || areDocumentsNew_)) {
        return;
    }
    mayHaveChanged_ = areDocumentsNew_ = false;
    installation_.session()->dropCache();
    diagnostics_.update(documents_, *installation_.session(), !checksAll);
}

} // namespace tessgen::cli
