#include "cli/recording/RecordingFormat.hpp"

#include "cli/output/Json.hpp"
#include "cli/output/Render.hpp"
#include "standalone/text/Text.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"

#include <nlohmann/json.hpp>

#include <cstddef>

namespace tessgen::cli {

namespace {

using kelwhich::WhichResult;
using nlohmann::ordered_json;

ordered_json written(bool answer) {
    return answer;
}

ordered_json written(std::u16string_view text) {
    if (const auto inUTF8 = standalone::toUTF8(text)) {
        return *inUTF8;
    }
    auto units = ordered_json::array();
    for (const char16_t unit : text) {
        units.push_back(static_cast<unsigned>(unit));
    }
    return units;
}

ordered_json written(const WhichResult& result) {
    return {{"path", written(result.path)}, {"kind", kindName(result.type)}};
}

ordered_json written(const SharedEntry& entry) {
    auto unsupported = ordered_json::array();
    for (const auto& symbol : entry->unsupportedSymbols) {
        unsupported.push_back(written(symbol));
    }
    return {{"path", written(entry->path)},        {"symbol", written(entry->symbol)},
            {"builtin", entry->isBuiltin},         {"redirect", entry->isRedirect},
            {"supportFlags", entry->supportFlags}, {"unsupportedSymbols", std::move(unsupported)}};
}

template <typename Answer>
ordered_json written(const std::optional<Answer>& answer) {
    return answer ? written(*answer) : ordered_json();
}

template <typename Answer>
ordered_json written(const std::vector<Answer>& answers) {
    auto list = ordered_json::array();
    for (const auto& answer : answers) {
        list.push_back(written(answer));
    }
    return list;
}

ordered_json written(const RecordedError& error) {
    if (standalone::isUTF8(error.message)) {
        return error.message;
    }
    auto bytes = ordered_json::array();
    for (const char byte : error.message) {
        bytes.push_back(static_cast<unsigned>(static_cast<unsigned char>(byte)));
    }
    return bytes;
}

ordered_json written(const Question& question) {
    const auto& query = queryFormat(question.kind);
    ordered_json line{{"ask", query.name}};
    if (query.hasArgument) {
        line["of"] = written(question.argument);
    }
    return line;
}

} // namespace

const QueryFormat& queryFormat(QueryKind kind) {
    return queryFormats.at(static_cast<std::size_t>(kind));
}

std::string headLine(const RecordingHead& head) {
    return printJSON({{"schema", recordingSchema}, {"sourceCode", head.sourceCode}, {"searchPath", head.searchPath}});
}

std::string answerLine(const Question& question, const RecordedAnswer& answer) {
    auto line = written(question);
    line[std::holds_alternative<RecordedError>(answer) ? "error" : "answer"] =
        std::visit([](const auto& value) { return written(value); }, answer);
    return printJSON(line);
}

std::string questionText(const Question& question) {
    return printJSON(written(question));
}

} // namespace tessgen::cli
