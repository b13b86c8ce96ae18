#include "host/Paths.hpp"
#include "standalone/doctor/Diagnosis.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace tessgen::standalone {

namespace {

using Entry = FileTree::Entry;
using Kind = FileTree::Kind;

bool isSameButForCase(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

// Goes through the folders that a look-up or a record can reach by package, class and private folders, each once,
// however many links lead to it.
class FileCheck {
public:
    FileCheck(const DiagnosisInput& examined, Findings& findings)
        : examined_(examined), findings_(findings), packages_(toUTF16(examined.installation.supportPackageRoot)),
          root_(toUTF16(examined.installation.root).value()) {
        for (const auto& extension : examined.installation.extensions) {
            endings_.push_back("." + extension);
        }
        for (const auto& folder : examined.installation.kelPath) {
            kelFolders_.insert(toUTF16(folder).value());
        }
    }

    // KEL folders first, so that their files are met under the paths by which they are known.
    void run() {
        for (const auto* folders : {&examined_.installation.kelPath, &examined_.installation.searchPath}) {
            for (const auto& folder : *folders) {
                enter(folder);
            }
        }
    }

private:
    static std::optional<std::u16string> toUTF16(const std::optional<std::string>& text) {
        return text ? standalone::toUTF16(*text) : std::nullopt;
    }

    void report(Diagnostic trap, std::string place) { findings_.push_back({trap, std::move(place)}); }

    void enter(const std::string& folder) {
        if (const auto real = readOrReport(folder, findings_, [&] { return examined_.realPath(folder); })) {
            visit(folder, *real);
        }
    }

    void visit(const std::string& folder, const std::string& real) {
        if (!visited_.insert(real).second) {
            return;
        }
        auto entries = readOrReport(folder, findings_, [&] {
            return examined_.files.entries(folder, [this](std::string_view name) { return matters(name); });
        });
        if (!entries) {
            return;
        }
        std::sort(entries->begin(), entries->end(), [](const Entry& a, const Entry& b) { return a.name < b.name; });
        for (const Entry& entry : *entries) {
            look(joinPath(folder, entry.name), real, entry);
        }
    }

    // Whether a file or a folder of that name could be looked for, or is meant to be.
    bool matters(std::string_view name) const {
        return isPackageClassOrPrivate(name) || isSameButForCase(name, "private")
               || std::any_of(endings_.begin(), endings_.end(), [&](const std::string& ending) {
                      return name.size() > ending.size()
                             && isSameButForCase(name.substr(name.size() - ending.size()), ending);
                  });
    }

    void look(const std::string& path, const std::string& realFolder, const Entry& entry) {
        const bool isLink = entry.kind == Kind::link;
        auto kind = std::optional(entry.kind);
        if (isLink) {
            const auto known = findings_.size();
            kind = readOrReport(path, findings_, [&] { return examined_.files.kindOf(path); });
            if (findings_.size() > known) {
                return;
            }
        }
        if (!isUTF8(entry.name)) {
            report(Diagnostic::nameNotUTF8, path);
        } else if (!kind) {
            report(Diagnostic::linkDangling, path);
        } else if (kind == Kind::file) {
            lookAtFile(path, entry.name);
        } else if (kind == Kind::folder && isPackageClassOrPrivate(entry.name)) {
            isLink ? enter(path) : visit(path, joinPath(realFolder, entry.name));
        } else if (kind == Kind::folder && isSameButForCase(entry.name, "private")) {
            report(Diagnostic::privateCase, path);
        }
    }

    void lookAtFile(const std::string& path, const std::string& name) {
        const auto endsWith = [](std::string_view text, std::string_view ending) {
            return text.size() > ending.size() && text.ends_with(ending);
        };
        if (std::any_of(endings_.begin(), endings_.end(), [&](const auto& ending) { return endsWith(name, ending); })) {
            checkRecordOf(path);
        } else if (!isPackageClassOrPrivate(name) && !isSameButForCase(name, "private")) {
            report(Diagnostic::extensionCase, path);
        }
    }

    void checkRecordOf(const std::string& path) {
        const auto text = standalone::toUTF16(path).value();
        if (kelFolders_.contains(std::u16string(kelwhich::packageRootFolder(text))) && !hasRecord(text)) {
            report(Diagnostic::kelFileWithoutRecord, path);
        }
    }

    // A record of its own, or of the file below root that it stands in for.
    bool hasRecord(const std::u16string& path) const {
        const auto* const store = examined_.store;
        return store != nullptr
               && (store->findByPath(path)
                   || (packages_ && store->findByPath(kelwhich::replacePrefix(path, *packages_, root_))));
    }

    const DiagnosisInput& examined_;
    Findings& findings_;
    const std::optional<std::u16string> packages_;
    const std::u16string root_;
    std::vector<std::string> endings_; // the extensions with their dots
    std::unordered_set<std::u16string> kelFolders_;
    std::unordered_set<std::string> visited_; // by real path
};

} // namespace

void checkFiles(const DiagnosisInput& examined, Findings& findings) {
    FileCheck(examined, findings).run();
}

} // namespace tessgen::standalone
