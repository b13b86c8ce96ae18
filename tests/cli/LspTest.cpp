#include "cli/lsp/Documents.hpp"
#include "cli/lsp/Frames.hpp"
#include "cli/lsp/JsonRpc.hpp"
#include "cli/output/FileURI.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessgen::test {
namespace {

using Bodies = std::vector<std::string>;
using nlohmann::json;

// The bodies, and "!" for what is not one.
Bodies framesOf(const std::string& bytes, std::size_t step) {
    cli::FrameParser parser;
    Bodies frames;
    for (std::size_t at = 0; at < bytes.size(); at += step) {
        parser.add(std::string_view(bytes).substr(at, step));
        while (const auto frame = parser.next()) {
            frames.push_back(frame->problem.empty() ? frame->body : "!");
        }
    }
    if (parser.isWithinFrame()) {
        frames.emplace_back("...");
    }
    return frames;
}

TEST(Lsp, TakesFramesOutOfAStreamHoweverItComes) {
    const std::string good = "Content-Length: 2\r\n\r\n{}";
    const auto tooLong = std::to_string(cli::FrameParser::longestBody + 1);
    const struct {
        std::string bytes;
        Bodies frames;
    } cases[] = {
        {good + good, {"{}", "{}"}},
        {"content-LENGTH:\t7 \r\nContent-Type: x; charset=utf-8\r\n\r\n\r\n\r\n\r\nab", {"\r\n\r\n\r\na", "..."}},
        {"Content-Length: 0\r\n\r\n" + good, {"", "{}"}},
        {"Content-Length: 3\r\n\r\n{}", {"..."}},
        {"Content-Type: x\r\n\r\n{}" + good, {"!", "{}"}},
        {"Content-Length: x\r\n\r\nContent-Length: -1\r\n\r\n" + good, {"!", "!", "{}"}},
        {"Content-Length: 2\r\nContent-Length: 2\r\n\r\n{}" + good, {"!", "{}"}},
        {"Content-Length: 4294967296\r\n\r\n" + good, {"!", "{}"}},
        {std::string(5000, 'x') + good, {"!", "{}"}},
        {"Content-Length: " + std::string(5000, '1') + "\r\n\r\n" + good, {"!", "{}"}},
        {"Content-Length: " + tooLong + "\r\n\r\n" + good, {"!", "..."}},
        {cli::framed("é") + good, {"é", "{}"}},
    };
    for (const auto& [bytes, frames] : cases) {
        for (const std::size_t step : {std::size_t{1}, std::size_t{7}, bytes.size()}) {
            EXPECT_EQ(framesOf(bytes, step), frames) << bytes.substr(0, 100) << " by " << step;
        }
    }
    cli::FrameParser parser; // what is too long is passed over and not kept
    parser.add("Content-Length: " + tooLong + "\r\n\r\n");
    EXPECT_FALSE(parser.next()->problem.empty());
    for (auto left = cli::FrameParser::longestBody + 1; left > 0;) {
        const auto size = std::min(left, std::size_t{1} << 20U);
        parser.add(std::string(size, 'x'));
        left -= size;
    }
    EXPECT_FALSE(parser.isWithinFrame());
    parser.add(good);
    EXPECT_EQ(parser.next()->body, "{}");
}

TEST(Lsp, TurnsPathsIntoURIsAndBack) {
    std::string all = "/";
    for (int byte = 1; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    for (const std::string& path : {all, std::string("/"), std::string("/a b/+p/@C/f.vk")}) {
        EXPECT_EQ(cli::pathOfURI(cli::fileURI(path)), path);
    }
    const struct {
        const char* uri;
        const char* path; // null for none
    } cases[] = {
        {"file:///a%20b?q#f", "/a b"}, {"FILE://LocalHost/a", "/a"}, {"file:///%e9%E9", "/\xE9\xE9"},
        {"file:///+p/@C", "/+p/@C"},   {"file://other/a", nullptr},  {"file:/a", nullptr},
        {"untitled:a", nullptr},       {"file:///%0", nullptr},      {"file:///%00", nullptr},
        {"file:///%+1", nullptr},      {"file://", nullptr},         {"", nullptr},
    };
    for (const auto& [uri, path] : cases) {
        EXPECT_EQ(cli::pathOfURI(uri), path == nullptr ? std::nullopt : std::optional<std::string>(path)) << uri;
    }
}

TEST(Lsp, CountsPositionsInBothEncodings) {
    const std::string text = "a\U0001F600b\r\n\xC3\xA9\xE6\x97\xA5\rc\n";
    const struct {
        cli::Position position;
        std::size_t utf16;
        std::size_t utf8;
    } cases[] = {
        {{0, 0}, 0, 0},   {{0, 1}, 1, 1},   {{0, 2}, 1, 1},   {{0, 3}, 5, 1},   {{0, 4}, 6, 1},
        {{0, 5}, 6, 5},   {{0, 9}, 6, 6},   {{1, 1}, 10, 8},  {{1, 2}, 13, 10}, {{1, 3}, 13, 10},
        {{2, 0}, 14, 14}, {{2, 7}, 15, 15}, {{3, 0}, 16, 16}, {{3, 1}, 16, 16}, {{9, 9}, 16, 16},
    };
    for (const auto& [position, utf16, utf8] : cases) {
        EXPECT_EQ(cli::offsetOf(text, position, cli::PositionEncoding::utf16), utf16) << position.line;
        EXPECT_EQ(cli::offsetOf(text, position, cli::PositionEncoding::utf8), utf8) << position.line;
        for (const auto& other : cases) { // after this one
            cli::LineBegin known;
            static_cast<void>(cli::offsetOf(text, position, cli::PositionEncoding::utf8, known));
            EXPECT_EQ(cli::offsetOf(text, other.position, cli::PositionEncoding::utf8, known), other.utf8)
                << position.line << " " << other.position.line;
        }
    }
    for (const auto encoding : {cli::PositionEncoding::utf16, cli::PositionEncoding::utf8}) {
        for (const std::size_t offset : {0U, 1U, 5U, 6U, 8U, 10U, 13U, 14U, 15U, 16U}) {
            EXPECT_EQ(cli::offsetOf(text, cli::positionOf(text, offset, encoding), encoding), offset);
        }
    }
}

// A document whose text has the cursor at "|".
cli::Documents documentAt(std::string text, json& params) {
    cli::Documents documents;
    documents.encoding = cli::PositionEncoding::utf8;
    const auto cursor = text.find('|');
    text.erase(cursor, 1);
    const auto [line, character] = cli::positionOf(text, cursor, documents.encoding);
    documents.didOpen({{"textDocument", {{"uri", "u"}, {"text", text}}}});
    params = {{"textDocument", {{"uri", "u"}}}, {"position", {{"line", line}, {"character", character}}}};
    return documents;
}

TEST(Lsp, FindsTheNameAtAPosition) {
    const char* const expression = "[a-z]+(/[a-z]+)*"; // of names with "/"
    const struct {
        const char* text;
        const char* name; // empty for none
        const char* beginning;
        bool isExpression = false;
    } cases[] = {
        {"x = |wave(1)", "wave", ""},
        {"x = wave|(1)", "wave", "wave"},
        {"a\nunits.me|tric.x2_ + 1", "units.metric.x2_", "units.me"},
        {"a.|b", "a.b", "a."},
        {"a.|", "", "a."},
        {"a..|b", "b", ""},
        {".|a", "a", ""},
        {" | wave", "", ""},
        {"\xC3\xA9t\xC3\xA9|.\xE6\x97\xA5", "\xC3\xA9t\xC3\xA9.\xE6\x97\xA5", "\xC3\xA9t\xC3\xA9"},
        {"a\xE2\x80\x8F"
         "b|\xC3\x97"
         "c",
         "b", "b"}, // neither a mark of direction nor a sign is a letter
        {"|", "", ""},
        {"x = lib/wa|ve.b", "lib/wave", "lib/wa", true},
        {"12|", "", "", true},
    };
    for (const auto& [text, name, beginning, isExpression] : cases) {
        json params;
        auto documents = documentAt(text, params);
        documents.pattern = isExpression ? cli::NamePattern(expression) : cli::NamePattern();
        const auto found = documents.nameAt(params);
        EXPECT_EQ(found ? found->text : "", name) << text;
        EXPECT_EQ(documents.beginningAt(params).text, beginning) << text;
    }
    EXPECT_TRUE(cli::NamePattern().matches("a.b_1"));
    EXPECT_FALSE(cli::NamePattern().matches("a b"));
    EXPECT_TRUE(cli::NamePattern("\\\\1[a-z]{1,256}").matches("\\1ab"));
    for (const char* const refused : {"(", "(a)\\1", "(a{1,16}){17}", "a+++++++++"}) {
        EXPECT_THROW(cli::NamePattern{refused}, std::runtime_error) << refused;
    }
    const std::string longLine(5000, 'x'); // only the neighbourhood is looked at
    EXPECT_LE(cli::NamePattern().find(longLine, 2500)->end, 2500 + cli::NamePattern::reach);
}

TEST(Lsp, AppliesChangesInTheirOrder) {
    json params;
    auto documents = documentAt("one\r\ntwo|", params);
    const auto at = [](std::size_t line, std::size_t character) {
        return json{{"line", line}, {"character", character}};
    };
    params["contentChanges"] = {{{"range", {{"start", at(0, 3)}, {"end", at(1, 0)}}}, {"text", " "}},
                                {{"range", {{"start", at(0, 99)}, {"end", at(99, 0)}}}, {"text", "\xC3\xA9"}},
                                {{"range", {{"start", at(0, 3)}, {"end", at(0, 0)}}}, {"text", ""}}};
    documents.didChange(params);
    EXPECT_EQ(documents.all().at("u").text, " two\xC3\xA9");
    params["contentChanges"] = {{{"text", "a\rb\nc"}},
                                {{"range", {{"start", at(2, 0)}, {"end", at(1, 0)}}}, {"text", "\n"}}, // after the "\r"
                                {{"range", {{"start", at(1, 0)}, {"end", at(1, 0)}}}, {"text", "d"}}};
    documents.didChange(params);
    EXPECT_EQ(documents.all().at("u").text, "a\r\ndc");
    params["contentChanges"] = {{{"text", "new"}}, {{"range", nullptr}}};
    EXPECT_THROW(documents.didChange(params), cli::RPCError);
    EXPECT_EQ(documents.all().at("u").text, "new");
    documents.didClose(params);
    EXPECT_THROW(documents.didChange(params), cli::RPCError);
    EXPECT_THROW(documents.nameAt(params), cli::RPCError);
}

} // namespace
} // namespace tessgen::test
