#include "analysis/Definition.hpp"

#include "analysis/Answer.hpp"
#include "analysis/Rules.hpp"
#include "host/Paths.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tessgen::analysis {

namespace {

using kelwhich::Explanation;

struct Obstacle {
    std::u16string_view words;
    std::string_view advice;
};

bool liesInPrivateFolder(const Definition& definition) {
    return kelwhich::fileName(kelwhich::parentDirectory(definition.path)) == u"private";
}

// What keeps names from the file; without another obstacle, how it is called.
std::vector<Obstacle> obstaclesOf(const Definition& definition) {
    const bool isPrivate = liesInPrivateFolder(definition);
    const bool isBarred = isPrivate && !kelwhich::getClassFolderInfo(definition.path); // even to a record
    const bool needsRecord = definition.isOnKELPath && !definition.isBelowSearchPath;
    std::vector<Obstacle> obstacles;
    const auto addIf = [&obstacles](bool isThere, const Obstacle& obstacle) {
        if (isThere) {
            obstacles.push_back(obstacle);
        }
    };
    addIf(!definition.hasSearchedExtension,
          {u"its extension is not searched for",
           "Give it an extension of the host language, or add its extension to the manifest."});
    addIf(isPrivate, {u"it lies in a private folder",
                      "Move it out of the private folder, if others than the files above are to use it."});
    addIf(needsRecord && !isBarred, {u"no support record leads to it, as to a KEL path file one must",
                                     "Add a record for it, and rebuild the store."});
    addIf(!needsRecord && !definition.isBelowSearchPath,
          {u"its folder is not on the search path", "Add its folder to the search path."});
    addIf(obstacles.empty(), {u"no name spells its file name and folders", "Rename the file or its folders."});
    return obstacles;
}

} // namespace

std::u16string ownName(const Definition& definition) {
    auto defined = kelwhich::qualifiedNameForPath(definition.path);
    const auto& names = definition.names;
    const bool isDefined = names.empty() || std::find(names.begin(), names.end(), defined) != names.end();
    return isDefined ? defined : names.front();
}

std::optional<Finding> unreachable(const Definition& definition) {
    if (!definition.names.empty()) {
        return std::nullopt;
    }
    const auto obstacles = obstaclesOf(definition);
    std::u16string message = u"no plain or dotted name reaches it: ";
    for (const auto& obstacle : obstacles) {
        message.append(&obstacle == &obstacles.front() ? u"" : u", and ").append(obstacle.words);
    }
    return Finding{rule::unreachable.code, rule::unreachable.level, ownName(definition), definition.path, {}, {},
                   std::move(message),     obstacles.front().advice};
}

std::optional<Finding> hidden(const Definition& definition, const Explanation& explanation) {
    const auto answer = answerOf(explanation);
    const auto own = std::find_if(answer.begin(), answer.end(), [&](const Answered& answered) {
        return isFile(answered.candidate->result.type) && answered.candidate->result.path == definition.path;
    });
    if (own == answer.begin()) {
        return std::nullopt;
    }
    const auto& first = answer.front();
    const bool isRedirected = first.resolution != &explanation.resolutions.back();
    return Finding{rule::hidden.code,
                   rule::hidden.level,
                   explanation.name,
                   definition.path,
                   first.candidate->result.path,
                   own == answer.end() ? std::nullopt : keyBetween(first, *own),
                   u"hidden by " + subject(*first.candidate)
                       + (isRedirected ? u", by a redirect to " + first.resolution->name : u""),
                   rule::hidden.advice};
}

} // namespace tessgen::analysis
