// The file format of recordings: lines of JSON in UTF-8. The first line holds what is known before any question, each
// other one a question to a collaborator of the resolver and the answer or the error that it got:
//   {"schema":"kelwhich-recording/1","sourceCode":[["library","signal"]],"searchPath":["/w/mine"]}
//   {"ask":"exists","of":"/host/kel/wave.vk","answer":true}
//   {"ask":"which","of":"wave","error":"/host/library: cannot be read"}
// Lines of one question stand in the order of its answers; the last one holds from then on.
//
// A text is a JSON string, or the list of its units when it is not Unicode: of code units, in an error of bytes.
// Threads: any.
#pragma once

#include "tessgen/kelwhich/MetadataResolver.hpp"
#include "tessgen/kelwhich/WhichResult.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

namespace tessgen::cli {

enum class QueryKind { which, findByPath, findBySymbol, exists, orvakroot, spkgroot, isOnKELPath };

struct Question {
    QueryKind kind;
    std::u16string argument; // empty when the question is about nothing: the two roots

    friend bool operator<(const Question& a, const Question& b) {
        return std::tie(a.kind, a.argument) < std::tie(b.kind, b.argument);
    }
};

struct RecordedError {
    std::string message;
};

using SharedEntry = std::shared_ptr<const kelwhich::SupportEntry>;

// Each question has answers of one of these types, or errors.
using RecordedAnswer =
    std::variant<RecordedError, bool, std::u16string, std::optional<std::u16string>, std::vector<kelwhich::WhichResult>,
                 std::optional<SharedEntry>, std::vector<SharedEntry>>;

// What the program and the resolver ask of a session itself, in UTF-8.
struct RecordingHead {
    std::vector<std::vector<std::string>> sourceCode; // folders of host code, as components below the root
    std::vector<std::string> searchPath;

    friend bool operator==(const RecordingHead&, const RecordingHead&) = default;
};

// Lines without their end.
std::string headLine(const RecordingHead& head);
std::string answerLine(const Question& question, const RecordedAnswer& answer);

// Errors: std::runtime_error, one line that names the key and what was expected of it; JsonSyntaxError.
RecordingHead readHeadLine(std::string_view line);
std::pair<Question, RecordedAnswer> readAnswerLine(std::string_view line);

// For an error: what is asked and of what, as in a line.
std::string spelled(const Question& question);

} // namespace tessgen::cli
