#include "cli/explanation/DeadEnds.hpp"

#include "cli/options/NextCommand.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/doctor/NotFound.hpp"
#include "standalone/doctor/UnsearchedFolders.hpp"
#include "standalone/files/BoundedFileTree.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/text/PathText.hpp"

#include <fmt/format.h>

#include <chrono>
#include <cstddef>
#include <exception>
#include <system_error>
#include <utility>

namespace tessgen::cli {

namespace {

std::vector<std::string> kelFolders() {
    std::vector<std::string> folders;
    for (const auto& folder : standalone::currentSession().installation.kelPath) {
        if (!folder.ends_with('/')) { // such a folder holds no KEL file
            folders.push_back(folder);
        }
    }
    return folders;
}

// `lib/wave.vk` means `wave`, the name that such a file defines; every other text means itself.
std::string nameMeantBy(const std::string& text) {
    const bool isFile = standalone::hasExtension(text, standalone::currentSession().installation.extensions);
    return isFile ? inUTF8(standalone::definedName(parseName(standalone::joinPath("/", text)))) : text;
}

// Adds what nobody finds to the manifest and the records.
std::string updateCommand(const Request& request) {
    const auto& installation = standalone::currentSession().installation;
    const auto folder = standalone::absolutePath("..", installation.manifest);
    const bool isInFolder = standalone::joinPath(installation.root, "").starts_with(standalone::joinPath(folder, ""));
    return thisProgram(request) + (isInFolder || request.installation ? "" : " -i " + shellWord(installation.manifest))
           + " init --update " + shellWord(isInFolder ? folder : installation.root);
}

} // namespace

std::vector<SearchedFolder> searchedFolders(const ResolverSession& resolver) {
    const auto& session = standalone::currentSession();
    std::vector<SearchedFolder> searched;
    for (const auto& path : session.installation.searchPath) {
        searched.push_back({path});
        if (!resolver.isReplayed()) {
            try {
                const auto kind = session.disk.kindOf(path);
                searched.back().problem = !kind                                        ? "absent"
                                          : kind != standalone::FileTree::Kind::folder ? "notAFolder"
                                                                                       : "";
                static_cast<void>(session.disk.entries(path, {[](std::string_view) { return false; }}));
            } catch (const std::system_error&) {
                searched.back().problem = "unreadable";
            }
        }
    }
    return searched;
}

std::vector<std::string> linesOf(const DeadEnd& deadEnd) {
    std::vector<std::string> lines;
    for (const auto& path : deadEnd.unrecorded) {
        lines.push_back(fmt::format("{}: a KEL file without the support record that would lead to it", escaped(path)));
    }
    for (const auto& path : deadEnd.unsearched) {
        lines.push_back(fmt::format("{}: its folder is not searched", escaped(path)));
    }
    return lines;
}

std::vector<std::string> notesOf(const DeadEnd& deadEnd) {
    auto notes = linesOf(deadEnd);
    if (auto words = suggestionWords(deadEnd); !words.empty()) {
        notes.insert(notes.begin(), std::move(words));
    }
    return notes;
}

std::string suggestionWords(const DeadEnd& deadEnd) {
    std::string words;
    for (const auto& name : deadEnd.similar) {
        words.append(words.empty()                      ? "did you mean "
                     : &name == &deadEnd.similar.back() ? " or "
                                                        : ", ")
            .append(escaped(name));
    }
    return words.append(words.empty() ? "" : "?");
}

DeadEnd DeadEnds::lookAt(const std::string& name) {
    DeadEnd deadEnd;
    if (name.starts_with('/')) {
        return deadEnd;
    }
    if (!deadline_) {
        deadline_ = Clock::now() + environmentMilliseconds("KELWHICH_SUGGEST_MS", std::chrono::milliseconds(50));
    }
    const auto& session = standalone::currentSession();
    const auto text = parseName(name);
    deadEnd.unrecorded = unrecordedAs(text);
    deadEnd.similar = similarTo(name);
    try {
        const standalone::BoundedFileTree files(session.files, [this] { return Clock::now() < *deadline_; });
        deadEnd.unsearched = standalone::filesIn(unsearchedFolders(), text, session.installation, files);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): what cannot be read is left out
    }
    return deadEnd;
}

std::vector<std::string> DeadEnds::similarTo(const std::string& name) {
    constexpr std::size_t most = 3;
    if (!suggestions_) {
        suggestions_.emplace(standalone::currentSession(), *deadline_);
    }
    const auto meant = nameMeantBy(name);
    auto names = suggestions_->similarTo(meant);
    if (meant != name) {
        names.insert(names.begin(), meant);
    }
    std::vector<std::string> similar;
    for (auto& known : names) {
        if (similar.size() == most || Clock::now() >= *deadline_) {
            break;
        }
        try {
            if (!resolver_->resolve(parseName(known)).empty()) {
                similar.push_back(std::move(known));
            }
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): a name that fails is not suggested
        }
    }
    return similar;
}

std::vector<std::string> DeadEnds::unrecordedAs(const std::u16string& name) const {
    const auto& session = standalone::currentSession();
    std::vector<std::string> unrecorded;
    try {
        const standalone::BoundedFileTree files(session.files, [this] { return Clock::now() < *deadline_; });
        for (auto& path : standalone::filesIn(kelFolders(), name, session.installation, files)) {
            if (!resolver_->findByPath(parseName(path))) {
                unrecorded.push_back(std::move(path));
            }
        }
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): what cannot be read is left out
    }
    return unrecorded;
}

const std::vector<std::string>& DeadEnds::unsearchedFolders() {
    if (!unsearched_) {
        unsearched_.emplace(); // also when it fails
        const auto& session = standalone::currentSession();
        const standalone::BoundedFileTree files(session.files, [this] { return Clock::now() < *deadline_; });
        *unsearched_ = standalone::unsearchedFolders(session.installation, files, standalone::realPath);
    }
    return *unsearched_;
}

std::string DeadEnds::nextSteps(const std::string& name, const DeadEnd& deadEnd, bool hasLeftOut) {
    std::string text = "Only a support record leads to a KEL file.\n";
    const auto& folders = unsearched_.value_or(std::vector<std::string>());
    if (!folders.empty()) {
        text += fmt::format("{} below the root {} source files and {} not searched: {}{}\n",
                            counted(folders.size(), "folder"), folders.size() == 1 ? "holds" : "hold",
                            folders.size() == 1 ? "is" : "are", escaped(folders.front()),
                            folders.size() == 1 ? "" : ", ...");
    }
    const auto whyNot = [&](const std::string& path) {
        return explainCommand(request_, fmt::format("--why-not {} ", path), name);
    };
    const auto& file = !deadEnd.unrecorded.empty() ? deadEnd.unrecorded : deadEnd.unsearched;
    if (request_.whyNot) { // whose answer leads on
        return text + (file.empty() && folders.empty() ? "" : "next: " + updateCommand(request_) + "\n");
    }
    return text + "next: "
           + (!file.empty()              ? whyNot(shellWord(file.front()))
              : !deadEnd.similar.empty() ? thisProgram(request_) + " " + nameWord(deadEnd.similar.front())
              : hasLeftOut               ? explainCommand(request_, "", name)
              : !folders.empty()         ? thisProgram(request_) + " doctor"
                                         : whyNot("FILE") + ", with the file that you expect")
           + "\n";
}

} // namespace tessgen::cli
