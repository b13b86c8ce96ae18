#include "cli/commands/Commands.hpp"
#include "cli/commands/InitTree.hpp"
#include "cli/installation/ManifestLookup.hpp"
#include "cli/options/NextCommand.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "standalone/files/AtomicFile.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/json/JsonEdit.hpp"
#include "standalone/json/JsonInput.hpp"
#include "standalone/manifest/InstallationNews.hpp"
#include "standalone/manifest/ManifestFile.hpp"
#include "standalone/store/SupportRecords.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

std::string contentOf(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(in), {}};
    if (!in) {
        throw std::runtime_error(file + ": cannot be read");
    }
    return content;
}

// A file that is written anew with some more text.
class AmendedFile {
public:
    // Errors: those of AtomicFile; it is a link or cannot be read.
    explicit AmendedFile(const std::string& file) : file_(file) {
        refuseLink(file);
        output_.emplace(file, standalone::anyFile);
        old_ = isThere(file) ? contentOf(file) : "";
    }

    [[nodiscard]] const std::string& old() const { return old_; }

    void write(const std::string& content) { output_->append(content); }

    // Errors: also when the file is another one than was read.
    void commit() {
        if ((isThere(file_) ? contentOf(file_) : "") != old_) {
            throw std::runtime_error(file_ + ": was changed meanwhile, and is as it was; run the command again");
        }
        output_->commit();
    }

private:
    std::string file_;
    std::optional<standalone::AtomicFile> output_;
    std::string old_;
};

// The paths of the files that have a record.
// Errors: std::runtime_error for a malformed line.
std::set<std::string> recordedFiles(const std::string& records, const std::string& file, const std::string& root) {
    std::set<std::string> paths;
    std::size_t number = 0;
    for (const auto& line : standalone::split(records, '\n')) {
        ++number;
        if (line.find_first_not_of(" \t\r") != std::string::npos) {
            const auto record = standalone::readLine(fmt::format("{}:{}:", file, number),
                                                     [&] { return standalone::readSupportRecord(line, root); });
            paths.insert(inUTF8(record.entry.path));
        }
    }
    return paths;
}

// What is added to the manifest, and to the records: none when there is no file of records.
struct Additions {
    standalone::InstallationNews news;
    std::vector<std::string> stores; // the store of new records, when the manifest names none

    [[nodiscard]] bool toManifest() const {
        return !news.searchFolders.empty() || !news.kelFolders.empty() || !stores.empty();
    }
    [[nodiscard]] bool toRecords() const { return !news.kelFiles.empty(); }
};

std::string amendedManifest(std::string text, const Additions& added) {
    const auto quoted = [](const std::vector<std::string>& folders) {
        std::vector<std::string> values;
        std::transform(folders.begin(), folders.end(), std::back_inserter(values), printJSONString);
        return values;
    };
    text = standalone::withElements(std::move(text), "searchPath", quoted(added.news.searchFolders));
    text = standalone::withElements(std::move(text), "kelPath", quoted(added.news.kelFolders));
    for (const auto& store : added.stores) {
        text = standalone::withMember(std::move(text), "supportStore", printJSONString(store));
    }
    return text;
}

std::string amendedRecords(std::string text, const Additions& added) {
    text += text.empty() || text.ends_with('\n') ? "" : "\n";
    for (const auto& file : added.news.kelFiles) {
        text += recordLine(file);
    }
    return text;
}

// What is added to a file, each under its title.
void appendAdded(std::string& text, const std::string& title, const std::vector<std::string>& paths) {
    for (const auto& path : paths) {
        text += fmt::format("  {}{}\n", title, escaped(path));
    }
}

std::string summary(const Additions& added, const std::string& manifest, const std::string& records) {
    std::string text;
    if (added.toManifest() || !added.toRecords()) {
        text = fmt::format("{}: {}\n", escaped(manifest), added.toManifest() ? "added" : "nothing to add");
        appendAdded(text, "searchPath: ", added.news.searchFolders);
        appendAdded(text, "kelPath: ", added.news.kelFolders);
        appendAdded(text, "supportStore: ", added.stores);
    }
    if (added.toRecords()) {
        text += fmt::format("{}: added; each is marked as supported: edit supportFlags where that is wrong\n",
                            escaped(records));
        appendAdded(text, "", added.news.kelFiles);
    }
    return text;
}

std::string storeCommand(const Request& request, const std::string& records) {
    const auto program =
        request.installation ? thisProgram(request) : "kelwhich -i " + shellWord(request.operands.front());
    return fmt::format("next:\n  {} store build {}\n", program, shellWord(records));
}

// Whether there is no store, or the records changed after it was built.
bool isToBeBuilt(const std::optional<std::string>& store, const std::string& records) {
    std::error_code unknown; // then the time is the least
    return !store || std::filesystem::last_write_time(*store, unknown) < std::filesystem::last_write_time(records);
}

// Errors: std::runtime_error: the folder's manifest is absent, is a link, or may be another user's.
void requireOwnManifest(const std::string& manifest, const std::string& folder) {
    if (!isThere(manifest)) {
        throw std::runtime_error(
            fmt::format("{}: there is no manifest; make one with: kelwhich init {}", manifest, shellWord(folder)));
    }
    requireTrusted(manifest);
    refuseLink(manifest, "name the manifest that it leads to with --installation");
}

// `folders`, relative to the tree, are new KEL folders.
// Errors: std::runtime_error: one is searched, and nothing is taken off the search path.
void refuseSearched(const std::vector<std::string>& folders, const std::string& tree,
                    const standalone::Installation& installation) {
    for (const auto& folder : folders) {
        const auto path = standalone::absolutePath(folder, tree);
        const auto isIt = [&path](const std::string& searched) { return standalone::realPath(searched) == path; };
        if (std::any_of(installation.searchPath.begin(), installation.searchPath.end(), isIt)) {
            throw std::runtime_error(fmt::format("{}: is on the search path, from which --update takes nothing; remove "
                                                 "it from searchPath of {} first",
                                                 folder, installation.manifest));
        }
    }
}

} // namespace

int updateInstallation(const Request& request) {
    const auto& folder = request.operands.front();
    const auto tree = realFolder(folder);
    if (!request.installation) {
        requireOwnManifest(standalone::joinPath(tree, standalone::manifestName), folder);
    }
    const auto manifest = request.installation.value_or(folder);
    AmendedFile manifestFile(standalone::readInstallation(manifest).manifest);
    const auto installation = standalone::readInstallation(manifest); // as it is now that no other update can change it
    const auto records = standalone::joinPath(tree, recordsName);
    const bool hasRecords = request.records || isThere(records);
    std::optional<AmendedFile> recordsFile;
    std::set<std::string> recorded;
    if (hasRecords) {
        recordsFile.emplace(records);
        recorded = recordedFiles(recordsFile->old(), records, installation.root);
    }
    const auto kelFolders = relativeKELFolders(request.kelFolders, tree);
    refuseSearched(kelFolders, tree, installation);
    Additions added{
        standalone::newsIn(tree, kelFolders, installation, recorded, standalone::RealFileTree(), standalone::realPath),
        {}};
    reportSkipped(added.news.notUTF8, added.news.unreadable);
    std::string next;
    if (!hasRecords && added.toRecords()) {
        added.news.kelFiles.clear();
        next = "KEL files are found by their support records; use --records to write a first version\n";
    } else if (added.toRecords() || !recorded.empty()) {
        added.stores.assign(installation.supportStore ? 0 : 1, storeName);
        next =
            added.toRecords() || isToBeBuilt(installation.supportStore, records) ? storeCommand(request, records) : "";
    }
    if (added.toRecords()) { // before the manifest is replaced, since there may be no room
        recordsFile->write(amendedRecords(recordsFile->old(), added));
    }
    if (added.toManifest()) {
        manifestFile.write(amendedManifest(manifestFile.old(), added));
        manifestFile.commit();
    }
    if (added.toRecords()) {
        recordsFile->commit();
    }
    writeOut(summary(added, installation.manifest, records) + next);
    return exitCodeFor(added.news.unreadable);
}

} // namespace tessgen::cli
