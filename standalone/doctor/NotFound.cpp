#include "standalone/doctor/NotFound.hpp"

#include "host/Paths.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>

namespace tessgen::standalone {

namespace {

// In UTF-8; the text was converted from UTF-8.
std::string inUTF8(std::u16string_view text) {
    return toUTF8(text).value_or(std::string());
}

// Why the search passes over a file in a folder of the search path.
std::string whyPassedOver(const std::u16string& path, std::u16string_view name) {
    if (name.find(u'/') != std::u16string_view::npos) {
        return "no search folder followed by /" + inUTF8(name) + " leads to it";
    }
    const auto defined = kelwhich::qualifiedNameForPath(path);
    return defined == name ? "the search does not look into the folder of the file"
                           : "it is not found as " + inUTF8(name) + ": it defines " + inUTF8(defined);
}

} // namespace

std::vector<std::string> whyNotFound(const std::string& path, std::u16string_view name, const SessionState& session) {
    const auto& installation = session.installation;
    const auto units = toUTF16(path).value_or(std::u16string());
    const auto found = session.find(name);
    if (std::any_of(found.begin(), found.end(), [&](const FoundPlace& place) { return place.line == units; })) {
        return {};
    }
    const auto kind = session.files.kindOf(path);
    if (kind != FileTree::Kind::file) {
        return {kind ? "it is not a regular file" : "there is no such file"};
    }
    std::vector<std::string> reasons;
    const auto folder = inUTF8(kelwhich::packageRootFolder(units));
    const auto holdsFolder = [&](const std::vector<std::string>& folders) {
        return std::find(folders.begin(), folders.end(), folder) != folders.end();
    };
    if (!hasExtension(path, installation.extensions)) {
        reasons.emplace_back("its extension is not in the manifest");
    }
    if (holdsFolder(installation.searchPath)) {
        reasons.push_back(whyPassedOver(units, name));
    } else {
        reasons.push_back(
            folder + " is not on the search path"
            + (holdsFolder(installation.kelPath) ? ": the files of KEL folders are found by records" : ""));
    }
    return reasons;
}

} // namespace tessgen::standalone
