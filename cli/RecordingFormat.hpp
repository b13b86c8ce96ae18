// The file format of recordings: lines of JSON in UTF-8. The first line holds what is known before any question, each
// other one a question to a collaborator of the resolver and the answer or the error that it got:
//   {"schema":"kelwhich-recording/1","sourceCode":[["library","signal"],["library","data"]]}
//   {"ask":"exists","of":"/host/kel/wave.vk","answer":true}
//   {"ask":"which","of":"wave","error":"/host/library: cannot be read"}
// Lines of one question stand in the order of its answers; the last one holds from then on.
//
// A text is a JSON string, or the list of its units when it is not Unicode: of code units, in an error of bytes.
// Threads: any.
#pragma once

#include "tessgen/kelwhich/MetadataResolver.hpp"
#include "tessgen/kelwhich/WhichResult.hpp"

#include <compare>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tessgen::cli {

enum class Ask { which, findByPath, findBySymbol, exists, orvakroot, spkgroot, isOnKELPath };

struct Question {
    Ask ask;
    std::u16string of; // empty when the question is about nothing: the two roots

    friend auto operator<=>(const Question&, const Question&) = default;
};

struct RecordedError {
    std::string message;
};

using SharedEntry = std::shared_ptr<const kelwhich::SupportEntry>;

// Each question has answers of one of these types, or errors.
using RecordedAnswer =
    std::variant<RecordedError, bool, std::u16string, std::optional<std::u16string>, std::vector<kelwhich::WhichResult>,
                 std::optional<SharedEntry>, std::vector<SharedEntry>>;

// The host's source-code folders, as components below its root.
using SourceCodeFolders = std::vector<std::vector<std::string>>;

// Lines without their end.
std::string headLine(const SourceCodeFolders& sourceCode);
std::string answerLine(const Question& question, const RecordedAnswer& answer);

// Errors: std::runtime_error, one line that names the key and what was expected of it; JsonSyntaxError.
SourceCodeFolders readHeadLine(std::string_view line);
std::pair<Question, RecordedAnswer> readAnswerLine(std::string_view line);

// For an error: what is asked and of what, as in a line.
std::string spelled(const Question& question);

} // namespace tessgen::cli
