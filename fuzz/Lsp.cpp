// Messages of an editor, one a line, framed here; a line that begins with "!" is bytes of the stream as they are. Each
// request gets one response, whatever comes, and the texts of documents stay UTF-8.
#include "cli/lsp/Server.hpp"
#include "cli/output/Json.hpp"
#include "fuzz/Fuzz.hpp"
#include "standalone/text/Text.hpp"

#include <nlohmann/json.hpp>

#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <poll.h>
#include <vector>

namespace {

using namespace tessgen;
using fuzz::require;
using nlohmann::json;

// An installation of a few definitions, made once.
const cli::Request& requestForExample() {
    static const cli::Request request = [] {
        const auto folder = std::filesystem::temp_directory_path() / "kelwhich-fuzz-lsp";
        std::filesystem::create_directories(folder / "mine/private");
        for (const auto* const file : {"mine/wave.vk", "mine/sum.vk", "mine/private/helper.vk"}) {
            std::ofstream(folder / file) << "% a file\n";
        }
        std::ofstream(folder / "installation.json")
            << R"({"root": "mine", "searchPath": ["."], "builtins": [{"name": "sum"}]})";
        cli::Request made;
        made.installation = folder.string();
        return made;
    }();
    return request;
}

// The bytes as a stream of frames, however they come.
std::vector<std::string> bodiesIn(std::string_view stream, std::size_t step) {
    cli::FrameParser parser;
    std::vector<std::string> bodies;
    for (std::size_t at = 0; at < stream.size(); at += step) {
        parser.add(stream.substr(at, step));
        while (const auto frame = parser.next()) {
            bodies.push_back(frame->body + std::string(frame->problem));
        }
    }
    return bodies;
}

class Talk {
public:
    Talk() : server_(requestForExample(), [this](const nlohmann::ordered_json& message) { receive(message); }) {
        send(R"({"id":"first","method":"initialize","params":{"capabilities":{}}})");
        send(R"({"method":"initialized","params":{}})");
        work();
    }

    void run(const std::vector<std::string>& bodies) {
        for (const auto& body : bodies) {
            send(body);
        }
        work();
        for (const auto& [id, count] : open_) {
            require(count == 0 || server_.isOver(), "each request has one response", id);
        }
    }

private:
    void send(const std::string& body) {
        json id = nullptr;
        try {
            const auto message = cli::parseMessage(body, id);
            open_[message.id.dump()] += message.isRequest() ? 1 : 0;
            change(message);
        } catch (const cli::RPCError&) {
            ++open_[id.dump()]; // is answered by an error
        }
        server_.take({body});
    }

    // As the server changes its own documents.
    void change(const cli::Message& message) {
        try {
            if (message.method == "textDocument/didOpen") {
                documents_.didOpen(message.params);
            } else if (message.method == "textDocument/didChange") {
                documents_.didChange(message.params);
            }
        } catch (const cli::RPCError&) { // malformed
        }
        for (const auto& [uri, document] : documents_.all()) {
            require(standalone::isUTF8(document.text), "the text of a document is UTF-8", document.text);
        }
    }

    void receive(const nlohmann::ordered_json& message) {
        const auto text = cli::printJSON(message);
        require(json::parse(text).at("jsonrpc") == "2.0", "a message is JSON", text);
        if (!message.contains("method")) {
            require(message.contains("result") != message.contains("error"), "a response has one of two", text);
            require(open_[message.at("id").dump()]-- > 0, "each request has one response", text);
        }
    }

    void work() {
        while (server_.work() || server_.openedDescriptor() >= 0) {
            pollfd opened{server_.openedDescriptor(), POLLIN, 0};
            poll(&opened, 1, opened.fd < 0 ? 0 : -1);
        }
    }

    std::map<std::string, int> open_; // requests by their ids
    cli::Documents documents_;
    cli::Server server_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string stream;
    for (const auto& line : standalone::split(fuzz::textOf(data, size), '\n')) {
        stream += line.starts_with('!') ? line.substr(1) + "\r\n" : cli::framed(line);
    }
    const auto bodies = bodiesIn(stream, stream.size());
    require(bodies == bodiesIn(stream, 1), "frames are the same however they come", stream);
    Talk().run(bodies);
    return 0;
}
