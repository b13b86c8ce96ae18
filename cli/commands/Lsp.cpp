#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/lsp/Frames.hpp"
#include "cli/lsp/Server.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Json.hpp"

#include <nlohmann/json.hpp>
#include <unistd.h>

namespace tessgen::cli {

namespace {

// Reads what is there, so that a request can be cancelled that waits behind another; waits if there is nothing to do.
void readMessages(FrameReader& reader, Server& server, bool waits) {
    constexpr std::size_t most = 1000; // messages that wait
    const auto milliseconds = waits ? server.milliseconds() : 0;
    auto hasMore =
        (waits || server.waiting() < most)
        && reader.wait({server.openedDescriptor(), server.changeDescriptor(), server.editorDescriptor()}, milliseconds);
    while (hasMore) {
        while (const auto frame = reader.next()) {
            server.take(*frame);
        }
        hasMore = server.waiting() < most && !reader.isAtEnd() && reader.wait({}, 0);
    }
}

} // namespace

int lsp(const Request& request) {
    if (isatty(STDIN_FILENO) != 0) {
        noteOnName(request);
    }
    Server server(request, [](const nlohmann::ordered_json& message) { writeOut(framed(printJSON(message))); });
    FrameReader reader(STDIN_FILENO);
    while (!server.isOver()) {
        const bool hasWorked = server.work();
        if (!hasWorked && reader.isAtEnd() && server.waiting() == 0) {
            break;
        }
        readMessages(reader, server, !hasWorked);
    }
    if (server.wasShutDown()) {
        return exitYes;
    }
    reportError(server.isOver()     ? "the editor ended without the request 'shutdown'"
                : reader.isCutOff() ? "standard input ended within a message"
                                    : "standard input ended without the request 'shutdown'");
    return exitNo;
}

} // namespace tessgen::cli
