#include "host/Paths.hpp"
#include "standalone/doctor/Diagnosis.hpp"
#include "standalone/store/SupportRecords.hpp"
#include "standalone/text/Hash.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace tessgen::standalone {

namespace {

using Kind = FileTree::Kind;

class RecordCheck {
public:
    RecordCheck(const DiagnosisInput& input, Findings& findings)
        : input_(input), findings_(findings), root_(toUTF16(input.installation.root).value()) {
        if (const auto& packages = input.installation.supportPackageRoot) {
            packages_ = toUTF16(*packages).value();
        }
    }

    void run(const SupportRecord& record) {
        if (!record.entry.isBuiltin) {
            checkFile(record.entry.path);
            checkUnsupported(record);
        }
        if (record.entry.isRedirect) {
            checkTarget(record.entry);
        }
    }

private:
    void report(Diagnostic diagnostic, const std::u16string& path) {
        const auto text = toUTF8(path).value_or("?");
        findings_.push_back({diagnostic, text, text});
    }

    void report(Diagnostic diagnostic, const std::u16string& path, const std::u16string& name) {
        report(diagnostic, path);
        auto& finding = findings_.back();
        finding.name = toUTF8(name).value_or("?");
        finding.place += ", " + finding.name;
    }

    void checkFile(const std::u16string& path) {
        bool isThere = isFile(path);
        if (packages_) {
            const auto standIn = kelwhich::replacePrefix(path, root_, *packages_);
            if (standIn != path) {
                const bool isReplaced = isFile(standIn);
                isThere = isThere || isReplaced;
                if (!isReplaced) {
                    checkCircle(standIn);
                }
            }
            const bool holdsRoot = kelwhich::beginsWith(root_, *packages_); // then the root is at fault, and reported
            if (!holdsRoot && kelwhich::beginsWith(path, *packages_)) {
                report(Diagnostic::recordInPackageRoot, path);
            }
        }
        if (!isThere) {
            report(Diagnostic::recordWithoutFile, path);
        }
    }

    // Looks each folder up once, since the files of a missing folder mostly have records too. In a folder that cannot
    // be read every file counts as there.
    bool isFile(const std::u16string& path) {
        const std::string text = toUTF8(path).value_or("");
        const std::string folder = text.substr(0, text.rfind('/'));
        const auto known = findings_.size();
        const auto kindOf = [&](const std::string& place) {
            return readOrReport(folder, findings_, [&] { return input_.files.kindOf(place); });
        };
        const auto [state, isNew] = folders_.try_emplace(folder, Folder::absent);
        if (isNew && (folder.empty() || kindOf(folder) == Kind::folder)) {
            state->second = Folder::there;
        }
        const bool found = state->second == Folder::there && kindOf(text) == Kind::file;
        if (findings_.size() > known) {
            state->second = Folder::unreadable;
        }
        return found || state->second == Folder::unreadable;
    }

    // The library asks the disk for a stand-in, and there a circle is an error.
    void checkCircle(const std::u16string& path) {
        if (input_.isCircle && input_.isCircle(toUTF8(path).value_or(""))) {
            report(Diagnostic::standInIsCircle, path);
        }
    }

    void checkUnsupported(const SupportRecord& record) {
        const auto& refused = record.entry.unsupportedSymbols;
        for (const auto& name : record.names) {
            if (std::find(refused.begin(), refused.end(), name) != refused.end()) {
                report(Diagnostic::recordRefusesItself, record.entry.path, name);
            }
        }
    }

    void checkTarget(const tessapp::internal::screener::meta::SupportEntry& entry) {
        const auto [resolved, isNew] = targets_.try_emplace(entry.symbol, true);
        if (isNew) {
            resolved->second = hasCandidate(entry);
        }
        if (!resolved->second) {
            report(Diagnostic::redirectToNothing, entry.path, entry.symbol);
        }
    }

    // True also when the disk fails. That is reported once, since it mostly fails for every target.
    bool hasCandidate(const tessapp::internal::screener::meta::SupportEntry& entry) {
        Findings failures;
        const auto answer = readOrReport(toUTF8(entry.path + u", " + entry.symbol).value_or("?"), failures,
                                         [&] { return std::optional(input_.resolves(entry.symbol)); });
        if (!answer && !std::exchange(targetFailureReported_, true)) {
            findings_.push_back(failures.front());
            findings_.back().path = toUTF8(entry.path).value_or("?");
        }
        return answer.value_or(true);
    }

    enum class Folder { there, absent, unreadable };

    const DiagnosisInput& input_;
    Findings& findings_;
    const std::u16string root_;
    std::optional<std::u16string> packages_;
    std::unordered_map<std::string, Folder, TextHash> folders_;
    std::unordered_map<std::u16string, bool, TextHash> targets_; // of redirects: whether they have a candidate
    bool targetFailureReported_ = false;
};

} // namespace

void checkRecords(const DiagnosisInput& input, Findings& findings) {
    if (input.store != nullptr) {
        RecordCheck check(input, findings);
        input.store->forEachRecord([&](const SupportRecord& record) { check.run(record); });
    }
}

} // namespace tessgen::standalone
