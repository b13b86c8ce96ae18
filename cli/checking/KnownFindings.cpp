#include "cli/checking/KnownFindings.hpp"

#include "analysis/Rules.hpp"
#include "cli/explanation/GivenPath.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/files/AtomicFile.hpp"
#include "standalone/files/LineReader.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace tessgen::cli {

namespace {

using analysis::KnownFinding;

bool isBaseline(const std::string& file) {
    std::string head(analysis::baselineHead.size(), '\0');
    std::ifstream(file, std::ios::binary).read(head.data(), static_cast<std::streamsize>(head.size()));
    return head == analysis::baselineHead;
}

constexpr standalone::Replaceable replaceableBaseline{"a baseline", "--baseline", isBaseline};

std::string contentOf(const std::string& file) {
    standalone::LineReader lines(file);
    std::string text;
    while (const auto line = lines.next()) {
        text.append(*line).append("\n");
    }
    return text;
}

// Whether its line is not too long to be read again.
bool fitsInLine(const KnownFinding& known) {
    constexpr std::size_t separators = 4;
    const auto size = known.code.size() + known.name.size() + known.path.size() + known.other.size() + known.use.size();
    return size + separators <= standalone::LineReader::longestLine;
}

// Whether the path or a folder above it is one of these, which are sorted.
bool isAtOrBelowOneOf(const std::vector<std::u16string>& paths, std::u16string_view path) {
    const auto isThere = [&paths](std::u16string_view p) { return std::binary_search(paths.begin(), paths.end(), p); };
    for (auto end = path.size(); end != 0 && end != std::u16string_view::npos; end = path.rfind(u'/', end - 1)) {
        if (isThere(path.substr(0, end))) {
            return true;
        }
    }
    return path.starts_with(u'/') && isThere(u"/");
}

std::u16string unescaped(const std::string& spelled) {
    return unescapedText(spelled).value_or(standalone::toUTF16(forJSON(spelled)).value());
}

} // namespace

KnownFindings::KnownFindings(const std::string& file, bool mayBeAbsent, const standalone::SessionState& session)
    : file_(absoluteInUTF8(file)), paths_(session), files_(session.files) {
    std::error_code unknown;
    if (!std::filesystem::exists(file_, unknown) && !unknown) {
        if (!mayBeAbsent) {
            throw std::runtime_error(file_ + ": there is no such baseline; write it with --update-baseline");
        }
        return;
    }
    const auto text = contentOf(file_);
    if (mayBeAbsent && text.empty()) {
        return;
    }
    try {
        known_ = analysis::readBaseline(text);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(file + ": " + error.what());
    }
}

void KnownFindings::apply(std::vector<ReportEntry>& entries, const CheckedScope& scope) const {
    std::set<KnownFinding> matched;
    for (auto& entry : entries) {
        auto key = keyOf(entry);
        entry.isKnown = known_.contains(key);
        matched.insert(std::move(key));
    }
    if (!scope.isSelected(std::string(analysis::rule::staleBaseline.code))) {
        return;
    }
    std::map<std::size_t, const KnownFinding*> stale; // by line
    for (const auto& [known, line] : known_) {
        if (!matched.contains(known) && isInScope(known, scope)) {
            stale.emplace(line, &known);
        }
    }
    for (const auto& [line, known] : stale) {
        entries.push_back(staleEntry(*known, line));
    }
}

std::size_t KnownFindings::update(std::vector<ReportEntry>& entries, const CheckedScope& scope) {
    std::set<KnownFinding> listed;
    for (const auto& [known, line] : known_) {
        if (!isInScope(known, scope)) {
            listed.insert(known);
        }
    }
    for (auto& entry : entries) {
        auto key = keyOf(entry);
        entry.isKnown = fitsInLine(key);
        if (entry.isKnown) {
            listed.insert(std::move(key));
        }
    }
    standalone::AtomicFile target(file_, replaceableBaseline);
    target.append(analysis::baselineText(listed));
    target.commit();
    return listed.size();
}

KnownFinding KnownFindings::keyOf(const ReportEntry& entry) const {
    const auto& finding = entry.finding;
    const auto spelled = [this](const std::u16string& path) { return escapedText(paths_.shortened(path)); };
    const auto use = !entry.use                ? std::string()
                     : entry.use->file.empty() ? std::string(analysis::unknownPlace)
                                               : spelled(standalone::toUTF16(entry.use->file).value());
    return {std::string(finding.code), escapedText(finding.name), spelled(finding.path), spelled(finding.other), use};
}

bool KnownFindings::isInScope(const KnownFinding& known, const CheckedScope& scope) const {
    if (!scope.isWhole || !scope.isSelected(known.code)) {
        return false;
    }
    if (!known.use.empty()) {
        return scope.hasUses;
    }
    const auto path = paths_.whole(unescaped(known.path));
    const auto& checked = scope.files.paths;
    return std::binary_search(checked.begin(), checked.end(), path)
           || (isAtOrBelowOneOf(scope.files.roots, path) && !isFile(path));
}

// Whether a file is there, or may be.
bool KnownFindings::isFile(const std::u16string& path) const {
    const auto text = standalone::toUTF8(path);
    try {
        return text && files_.kindOf(*text) == standalone::FileTree::Kind::file;
    } catch (const std::system_error&) {
        return true;
    }
}

ReportEntry KnownFindings::staleEntry(const KnownFinding& known, std::size_t line) const {
    const auto& [code, level, meaning, advice] = analysis::rule::staleBaseline;
    const auto about = known.use.empty() || known.use == analysis::unknownPlace ? known.path : known.use;
    const auto message =
        unescaped("this line matches no finding: " + known.code + (about.empty() ? "" : " of " + about));
    return {{code, level, unescaped(known.name), standalone::toUTF16(file_).value(), {}, {}, message, advice},
            UsePlace{file_, line, 1}};
}

} // namespace tessgen::cli
