#include "cli/explanation/ReachingNames.hpp"

#include "cli/explanation/GivenPath.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/doctor/NotFound.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace tessgen::cli {

namespace {

using kelwhich::Explanation;

std::string fileNameOf(const std::u16string& path) {
    return inUTF8(path.substr(path.rfind(u'/') + 1));
}

// Appends the candidates that `isIt` accepts, with what is before them.
template <typename Predicate>
void append(std::vector<ReachingName>& found, const std::string& name, const Explanation& explanation, Predicate isIt) {
    std::vector<std::string> before;
    for (const auto& resolution : explanation.resolutions) {
        const bool isRedirect = &resolution != &explanation.resolutions.back();
        for (const auto& candidate : resolution.candidates) {
            if (candidate.repeat) {
                continue;
            }
            if (isIt(candidate.result.path)) {
                const auto form =
                    candidate.source.question == Explanation::Source::Question::host
                        ? std::optional(standalone::formOf(inUTF8(resolution.name), inUTF8(candidate.result.path)))
                        : std::nullopt;
                found.push_back({name, candidate.result, candidate.rank, before,
                                 isRedirect ? std::optional(inUTF8(resolution.name)) : std::nullopt, candidate.source,
                                 form});
            }
            before.push_back(inUTF8(candidate.result.path));
        }
    }
}

} // namespace

ReachingNames::ReachingNames(const standalone::SessionState& session, const kelwhich::KELWhichResolver& resolver)
    : session_(session), resolver_(resolver), known_(session) {}

Reached ReachingNames::find(const std::string& file) {
    if (file.empty() || !standalone::isUTF8(file)) {
        throw std::runtime_error(file.empty() ? "a path cannot be empty" : "the path is not UTF-8");
    }
    auto path = absolute(file);
    const auto fileName = fileNameOf(path);
    const auto known = known_.find(fileName);
    std::set<std::string> names(known.begin(), known.end());
    names.insert(redirectedTo(fileName).begin(), redirectedTo(fileName).end());
    auto found = namesFor(names, [&path](const std::u16string& other) { return other == path; });
    if (found.empty()) {
        const auto place = withoutFolderLinks(inUTF8(path));
        found = namesFor(names, [&place](const std::u16string& other) {
            return other.starts_with(u'/') && isPlace(inUTF8(other), place);
        });
        path = found.empty() ? path : found.front().result.path;
    }
    std::error_code unknown;
    const auto kind = std::filesystem::symlink_status(inUTF8(path), unknown).type();
    return {file, std::move(found), pathsFor(path), kind == std::filesystem::file_type::not_found};
}

template <typename Predicate>
std::vector<ReachingName> ReachingNames::namesFor(const std::set<std::string>& names, Predicate isIt) const {
    std::vector<ReachingName> found;
    for (const auto& name : names) {
        append(found, name, resolver_.explain(parseName(name)), isIt);
    }
    return found;
}

// Any file may be what a redirect leads to, so all of them are resolved, once.
const std::set<std::string>& ReachingNames::redirectedTo(const std::string& fileName) {
    if (!redirected_) {
        redirected_.emplace();
        for (const auto& name : known_.redirecting()) {
            for (const auto& result : resolver_.resolve(parseName(name))) {
                (*redirected_)[fileNameOf(result.path)].insert(name);
            }
        }
    }
    return (*redirected_)[fileName];
}

std::vector<std::string> ReachingNames::pathsFor(const std::u16string& path) const {
    auto names = standalone::usualNames(path, session_.installation);
    const auto file = fileNameOf(path);
    const auto folder = fileNameOf(path.substr(0, path.rfind(u'/'))) + "/";
    for (const auto& end : {file.substr(0, file.rfind('.')), file}) { // a part of the path finds a record
        names.insert(names.end() - 1, folder + end);
    }
    std::vector<std::string> paths;
    for (const auto& name : names) {
        if (name.find('/') == std::string::npos || std::find(paths.begin(), paths.end(), name) != paths.end()) {
            continue;
        }
        const auto results = resolver_.resolve(parseName(name));
        if (std::any_of(results.begin(), results.end(), [&](const auto& result) { return result.path == path; })) {
            paths.push_back(name);
        }
    }
    return paths;
}

} // namespace tessgen::cli
