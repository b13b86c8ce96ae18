#include "analysis/Answer.hpp"

#include "host/Paths.hpp"

#include <algorithm>
#include <compare>

namespace tessgen::analysis {

using kelwhich::Explanation;

std::vector<Answered> answerOf(const Explanation& explanation) {
    std::vector<Answered> answer;
    for (const auto& resolution : explanation.resolutions) {
        for (const auto& candidate : resolution.candidates) {
            if (!candidate.repeat) {
                answer.push_back({&candidate, &resolution});
            }
        }
    }
    return answer;
}

std::optional<Explanation::Key> keyBetween(const Answered& first, const Answered& other) {
    if (first.resolution != other.resolution) {
        return std::nullopt;
    }
    return *std::find_if(Explanation::keys.begin(), Explanation::keys.end(), [&](Explanation::Key key) {
        return std::is_neq(Explanation::compare(key, *first.candidate, *other.candidate));
    });
}

bool isFile(kelwhich::WhichResultType kind) {
    return kind == kelwhich::WhichResultType::KELPath || kind == kelwhich::WhichResultType::ORVAKPath;
}

bool isAbsoluteFile(const kelwhich::WhichResult& result) {
    return isFile(result.type) && result.path.starts_with(u'/');
}

std::u16string subject(const Explanation::Candidate& candidate) {
    const auto& path = candidate.result.path;
    if (!isFile(candidate.result.type)) {
        return u"the built-in " + path;
    }
    return (candidate.isUser() ? u"your " : u"") + std::u16string(kelwhich::fileName(path));
}

std::u16string counted(std::size_t number, const std::u16string& noun) {
    const auto digits = std::to_string(number);
    return std::u16string(digits.begin(), digits.end()) + u" " + noun + (number == 1 ? u"" : u"s");
}

} // namespace tessgen::analysis
