#include "host/Paths.hpp"
#include "standalone/doctor/Diagnosis.hpp"
#include "standalone/text/Hash.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <unordered_set>

namespace tessgen::standalone {

namespace {

using Entry = FileTree::Entry;
using Kind = FileTree::Kind;

// Visits every folder that a look-up or a record can reach through package, class and private folders. Visits each
// once, however many links lead to it.
class FileCheck {
public:
    FileCheck(const DiagnosisInput& input, Findings& findings)
        : input_(input), findings_(findings), packages_(toUTF16(input.installation.supportPackageRoot)),
          root_(toUTF16(input.installation.root).value()) {
        for (const auto& extension : input.installation.extensions) {
            lowerExtensions_.push_back(inLowerCase(extension));
        }
        for (const auto& folder : input.installation.kelPath) {
            kelFolders_.insert(toUTF16(folder).value());
        }
    }

    // KEL folders first, so that their files are visited under the paths that make them KEL path files.
    void run() {
        for (const auto* folders : {&input_.installation.kelPath, &input_.installation.searchPath}) {
            for (const auto& folder : *folders) {
                enter(folder);
            }
        }
    }

private:
    static std::optional<std::u16string> toUTF16(const std::optional<std::string>& text) {
        return text ? standalone::toUTF16(*text) : std::nullopt;
    }

    void report(Diagnostic diagnostic, const std::string& path) { findings_.push_back({diagnostic, path, path}); }

    void enter(const std::string& folder) {
        if (const auto real = readOrReport(folder, findings_, [&] { return input_.realPath(folder); })) {
            visit(folder, *real);
        }
    }

    void visit(const std::string& folder, const std::string& real) {
        if (!visited_.insert(real).second) {
            return;
        }
        auto entries = readOrReport(folder, findings_, [&] {
            return input_.files.entries(folder, {[this](std::string_view name) { return isRelevant(name); }});
        });
        if (!entries) {
            return;
        }
        std::sort(entries->begin(), entries->end(), [](const Entry& a, const Entry& b) { return a.name < b.name; });
        for (const Entry& entry : *entries) {
            visitEntry(joinPath(folder, entry.name), real, entry);
        }
    }

    // Whether the search can reach an entry of that name, or could but for the case of its letters.
    bool isRelevant(std::string_view name) const {
        const std::string lower = inLowerCase(name);
        return isPackageClassOrPrivate(name) || lower == "private" || hasExtension(lower, lowerExtensions_);
    }

    void visitEntry(const std::string& path, const std::string& realFolder, const Entry& entry) {
        const bool isLink = entry.kind == Kind::link;
        auto kind = std::optional(entry.kind);
        if (isLink) {
            const auto known = findings_.size();
            kind = readOrReport(path, findings_, [&] { return input_.files.kindOf(path); });
            if (findings_.size() > known) {
                return;
            }
        }
        if (!isUTF8(entry.name)) {
            report(Diagnostic::nameNotUTF8, path);
        } else if (!kind) {
            report(Diagnostic::linkDangling, path);
        } else if (kind == Kind::file) {
            checkFile(path, entry.name);
        } else if (kind == Kind::folder && isPackageClassOrPrivate(entry.name)) {
            isLink ? enter(path) : visit(path, joinPath(realFolder, entry.name));
        } else if (kind == Kind::folder && inLowerCase(entry.name) == "private") {
            report(Diagnostic::privateCase, path);
        }
    }

    void checkFile(const std::string& path, const std::string& name) {
        if (hasExtension(name, input_.installation.extensions)) {
            checkRecordOf(path);
        } else if (!isPackageClassOrPrivate(name) && inLowerCase(name) != "private") {
            report(Diagnostic::extensionCase, path);
        }
    }

    void checkRecordOf(const std::string& path) {
        const auto text = standalone::toUTF16(path).value();
        if (kelFolders_.contains(std::u16string(kelwhich::packageRootFolder(text))) && !hasRecord(text)) {
            report(Diagnostic::kelFileWithoutRecord, path);
        }
    }

    // A record of its own, or of the file below root that it replaces.
    bool hasRecord(const std::u16string& path) const {
        const auto* const store = input_.store;
        return store != nullptr
               && (store->findByPath(path)
                   || (packages_ && store->findByPath(kelwhich::replacePrefix(path, *packages_, root_))));
    }

    const DiagnosisInput& input_;
    Findings& findings_;
    const std::optional<std::u16string> packages_;
    const std::u16string root_;
    std::vector<std::string> lowerExtensions_;
    std::unordered_set<std::u16string, TextHash> kelFolders_;
    std::unordered_set<std::string, TextHash> visited_; // by real path
};

} // namespace

void checkFiles(const DiagnosisInput& input, Findings& findings) {
    FileCheck(input, findings).run();
}

} // namespace tessgen::standalone
