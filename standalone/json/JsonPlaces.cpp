#include "standalone/json/JsonPlaces.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>
#include <vector>

namespace tessgen::standalone {

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// Reads a text key by key and value by value; a list or object comes at its bracket, before its elements.
class JsonWalk {
public:
    explicit JsonWalk(std::string_view text)
        : text_(text), end_(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0) {}

    // False at the end of the text.
    bool next() {
        if (opens()) {
            levels_.push_back({token().front() == '{', {}, 0});
            keyComes_ = levels_.back().isObject;
        }
        while (readToken()) {
            const char first = token().front();
            if (first == ',' && !levels_.empty()) {
                keyComes_ = levels_.back().isObject;
                ++levels_.back().index;
            } else if ((first == '}' || first == ']') && !levels_.empty()) {
                levels_.pop_back();
                keyComes_ = false;
            } else if (first != ':') {
                isKey_ = std::exchange(keyComes_, false);
                if (isKey_) {
                    levels_.back().key = nlohmann::json::parse(token()).get<std::string>();
                }
                return true;
            }
        }
        return false;
    }

    [[nodiscard]] std::string_view token() const { return text_.substr(begin_, end_ - begin_); }
    [[nodiscard]] std::size_t place() const { return begin_; }
    [[nodiscard]] std::size_t depth() const { return levels_.size(); }
    [[nodiscard]] bool isKey() const { return isKey_; }
    [[nodiscard]] bool opens() const { return token() == "{" || token() == "["; }

    // The place of the current key or value, such as "builtins[1].name".
    [[nodiscard]] std::string path() const {
        std::string path;
        for (const auto& level : levels_) {
            if (!level.isObject) {
                path.append("[").append(std::to_string(level.index)).append("]");
            } else {
                path.append(path.empty() ? "" : ".").append(level.key);
            }
        }
        return path;
    }

private:
    struct Level {
        bool isObject;
        std::string key;
        std::size_t index;
    };

    bool readToken() {
        begin_ = std::min(text_.find_first_not_of(blanks, end_), text_.size());
        end_ = begin_;
        if (begin_ == text_.size()) {
            return false;
        }
        const char first = text_[begin_];
        if (first == '"') {
            do {
                end_ += text_[end_] == '\\' ? 2U : 1U;
            } while (end_ < text_.size() && text_[end_] != '"');
            end_ = std::min(end_ + 1, text_.size());
        } else if (std::string_view("{}[]:,").find(first) != std::string_view::npos) {
            ++end_;
        } else {
            end_ = std::min(text_.find_first_of(" \t\r\n{}[]:,\"", begin_), text_.size());
        }
        return true;
    }

    std::string_view text_;
    std::size_t begin_ = 0; // of the token
    std::size_t end_;
    std::vector<Level> levels_; // the lists and objects around the token, outermost first
    bool keyComes_ = false;
    bool isKey_ = false;
};

// Of the first key or value that fits; the end of the text when none does.
template <typename Fits>
std::size_t firstPlace(std::string_view text, Fits fits) {
    for (JsonWalk walk(text); walk.next();) {
        if (fits(walk)) {
            return walk.place();
        }
    }
    return text.size();
}

} // namespace

std::size_t placeOfKey(std::string_view text, std::size_t ordinal) {
    return firstPlace(text, [left = ordinal + 1](const JsonWalk& walk) mutable {
        left -= walk.isKey() ? 1U : 0U;
        return left == 0;
    });
}

std::size_t placeOfNumber(std::string_view text, std::string_view number) {
    return firstPlace(text, [number](const JsonWalk& walk) { return walk.token().starts_with(number); });
}

std::size_t placeOfDepth(std::string_view text, std::size_t depth) {
    return firstPlace(text, [depth](const JsonWalk& walk) { return walk.opens() && walk.depth() == depth; });
}

std::size_t placeOfValue(std::string_view text, const std::string& place) {
    const auto found =
        firstPlace(text, [&place](const JsonWalk& walk) { return !walk.isKey() && walk.path() == place; });
    if (found < text.size() || place.empty()) {
        return found;
    }
    const auto step = place.rfind('.');
    return placeOfValue(text, step == std::string::npos ? "" : place.substr(0, step));
}

std::size_t placeOfItsKey(std::string_view text, const std::string& place) {
    return firstPlace(text, [&place](const JsonWalk& walk) { return walk.isKey() && walk.path() == place; });
}

} // namespace tessgen::standalone
