// The file format of recordings: lines of JSON in UTF-8. The first line, the head, holds what is known before any
// question. Each other line holds one question to a collaborator of the resolver, with its answer or error:
//   {"schema":"kelwhich-recording/1","sourceCode":[["library","signal"]],"searchPath":["/w/mine"]}
//   {"ask":"exists","of":"/host/kel/wave.vk","answer":true}
//   {"ask":"which","of":"wave","error":"/host/library: cannot be read"}
// Lines of the same question are in the order of its answers; the last answer repeats for ever.
//
// A text is a JSON string. Text that is not Unicode is a list: of UTF-16 code units, or of bytes in an error.
// Threads: any.
#pragma once

#include "tessgen/kelwhich/MetadataResolver.hpp"
#include "tessgen/kelwhich/WhichResult.hpp"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

namespace tessgen::cli {

inline constexpr std::string_view recordingSchema = "kelwhich-recording/1";

enum class QueryKind { which, findByPath, findBySymbol, exists, orvakroot, spkgroot, isOnKELPath };

struct QueryFormat {
    std::string_view name;
    bool hasArgument;
};

// In the order of QueryKind.
inline constexpr std::array queryFormats{
    QueryFormat{"which", true},       QueryFormat{"findByPath", true}, QueryFormat{"findBySymbol", true},
    QueryFormat{"exists", true},      QueryFormat{"orvakroot", false}, QueryFormat{"spkgroot", false},
    QueryFormat{"isOnKELPath", true},
};
const QueryFormat& queryFormat(QueryKind kind);

struct Question {
    QueryKind kind;
    std::u16string argument; // empty for the two roots, which take none

    friend bool operator<(const Question& a, const Question& b) {
        return std::tie(a.kind, a.argument) < std::tie(b.kind, b.argument);
    }
};

struct RecordedError {
    std::string message;
};

using SharedEntry = std::shared_ptr<const kelwhich::SupportEntry>;

// Every answer to one kind of question has the same type, or is an error.
using RecordedAnswer =
    std::variant<RecordedError, bool, std::u16string, std::optional<std::u16string>, std::vector<kelwhich::WhichResult>,
                 std::optional<SharedEntry>, std::vector<SharedEntry>>;

// What the program and the resolver read from the session itself, in UTF-8.
struct RecordingHead {
    std::vector<std::vector<std::string>> sourceCode; // folders of host code, as components below the root
    std::vector<std::string> searchPath;

    friend bool operator==(const RecordingHead&, const RecordingHead&) = default;
};

// Lines, without line ends. See RecordingParser.cpp for reading.
std::string headLine(const RecordingHead& head);
std::string answerLine(const Question& question, const RecordedAnswer& answer);

// Errors: std::runtime_error, one line with the key and what was expected; JsonSyntaxError.
RecordingHead readHeadLine(std::string_view line);
std::pair<Question, RecordedAnswer> readAnswerLine(std::string_view line);

// A question as its line has it, for an error message.
std::string questionText(const Question& question);

} // namespace tessgen::cli
