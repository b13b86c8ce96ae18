#include "analysis/Lock.hpp"

#include "analysis/Answer.hpp"
#include "analysis/Names.hpp"

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <utility>

namespace tessgen::analysis {

namespace {

constexpr std::size_t fieldsEach = 4; // of a candidate; the last one has no key, the name stands before the first
constexpr std::string_view noVerdict = "-";
constexpr std::string_view by = "by "; // before a key
constexpr std::string_view byRedirect = "by redirect";

std::string verdictsOf(const LockedCandidate& candidate) {
    std::string text;
    for (const auto& [holds, word] : {std::pair(candidate.isUser, "user"),
                                      {candidate.isSupported, "supported"},
                                      {candidate.isIndirect, "indirect"},
                                      {candidate.isMissing, "missing"}}) {
        if (holds) {
            text.append(text.empty() ? "" : ",").append(word);
        }
    }
    return text.empty() ? std::string(noVerdict) : text;
}

std::string keyField(const LockedCandidate& candidate) {
    return candidate.ahead ? std::string(by).append(keyName(*candidate.ahead)) : std::string(byRedirect);
}

std::vector<std::string_view> fieldsOf(std::string_view line) {
    std::vector<std::string_view> fields;
    for (std::size_t begin = 0; begin <= line.size();) {
        const auto end = std::min(line.find('\t', begin), line.size());
        fields.push_back(line.substr(begin, end - begin));
        begin = end + 1;
    }
    return fields;
}

class LineFields {
public:
    LineFields(std::string_view line, const Spelling& spelling) : fields_(fieldsOf(line)), spelling_(spelling) {
        if (fields_.size() % fieldsEach != 0) {
            throw std::runtime_error("expected a name, then a path, a kind, verdicts and a key for each candidate, "
                                     "without a key for the last");
        }
    }

    [[nodiscard]] bool isAtEnd() const { return next_ == fields_.size(); }

    std::u16string name() {
        auto name = text();
        require(!name.empty(), "a name");
        return name;
    }

    std::u16string text() {
        auto text = spelling_.read(next());
        require(text.has_value(), "a text, escaped as kelwhich lock writes it");
        return *std::move(text);
    }

    kelwhich::WhichResultType kind() {
        const auto kind = kindNamed(next());
        require(kind.has_value(), "a kind, such as KELPath");
        return *kind;
    }

    void readVerdicts(LockedCandidate& candidate) {
        const auto field = next();
        const auto has = [field](std::string_view word) { return field.find(word) != std::string_view::npos; };
        candidate.isUser = has("user");
        candidate.isSupported = has("supported");
        candidate.isIndirect = has("indirect");
        candidate.isMissing = has("missing");
        require(verdictsOf(candidate) == field, R"("-", or some of user,supported,indirect,missing)");
    }

    std::optional<kelwhich::Explanation::Key> key() {
        const auto field = next();
        if (field == byRedirect) {
            return std::nullopt;
        }
        const auto key = field.starts_with(by) ? keyNamed(field.substr(by.size())) : std::nullopt;
        require(key.has_value(), R"("by " and a key, such as user)");
        return key;
    }

private:
    std::string_view next() { return fields_[next_++]; }

    void require(bool isTrue, std::string_view expected) const {
        if (!isTrue) {
            throw std::runtime_error("field " + std::to_string(next_) + ": expected " + std::string(expected));
        }
    }

    std::vector<std::string_view> fields_;
    const Spelling& spelling_;
    std::size_t next_ = 0;
};

} // namespace

LockedName lockedName(const kelwhich::Explanation& explanation,
                      const std::function<bool(const kelwhich::Explanation::Candidate&)>& isMissing) {
    const auto answer = answerOf(explanation);
    LockedName locked{explanation.name, {}};
    for (const auto& answered : answer) {
        const bool isLast = &answered == &answer.back();
        const auto& candidate = *answered.candidate;
        locked.candidates.push_back({candidate.result.path, candidate.result.type, candidate.isUser(),
                                     candidate.isSupported(), !candidate.isDirect(), isMissing(candidate),
                                     isLast ? std::nullopt : keyBetween(answered, *(&answered + 1))});
    }
    return locked;
}

std::string spelledName(const std::u16string& name, const Spelling& spelling) {
    const auto text = spelling.write(name);
    const auto first = std::string_view("!\"#").find(text.front()); // which sort before the first line, or beside it
    return first == std::string_view::npos ? text : "\\u{2" + std::to_string(first + 1) + "}" + text.substr(1);
}

std::string lockLine(const LockedName& locked, const Spelling& spelling) {
    auto line = spelledName(locked.name, spelling);
    for (const auto& candidate : locked.candidates) {
        line.append("\t").append(spelling.write(candidate.path)).append("\t").append(kindName(candidate.kind));
        line.append("\t").append(verdictsOf(candidate));
        if (&candidate != &locked.candidates.back()) {
            line.append("\t").append(keyField(candidate));
        }
    }
    return line;
}

std::string_view nameInLine(std::string_view line) {
    return line.substr(0, line.find('\t'));
}

LockedName readLockLine(std::string_view line, const Spelling& spelling) {
    LineFields fields(line, spelling);
    LockedName locked{fields.name(), {}};
    while (!fields.isAtEnd()) {
        auto& candidate = locked.candidates.emplace_back();
        candidate.path = fields.text();
        candidate.kind = fields.kind();
        fields.readVerdicts(candidate);
        candidate.ahead = fields.isAtEnd() ? std::nullopt : fields.key();
    }
    return locked;
}

} // namespace tessgen::analysis
