#include "cli/explanation/ExplanationWording.hpp"

#include "cli/output/Escape.hpp"
#include "cli/output/Render.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"
#include "tessgen/kelwhich/ClassFolderInfo.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace tessgen::cli {

namespace {

using kelwhich::Explanation;
using Candidate = Explanation::Candidate;
using Definition = Explanation::Definition;
using Key = Explanation::Key;
using Kind = Explanation::Kind;
using Ownership = Explanation::Ownership;
using Support = Explanation::Support;

// Says that a file defines `name`, or what it defines instead.
std::string fileDefinition(Definition definition, const std::u16string& path, const std::u16string& definedName,
                           std::string_view subject, const std::string& name) {
    if (definition == Definition::otherClass) {
        const auto folder = kelwhich::getClassFolderInfo(path);
        const auto className = folder ? inUTF8(std::u16string(folder->className)) : std::string();
        return fmt::format("{} is a method of the class {}", subject, className);
    }
    return definition == Definition::otherName ? fmt::format("{} defines {}", subject, inUTF8(definedName))
                                               : fmt::format("{} defines {}", subject, name);
}

std::string definitionReason(const Candidate& candidate, std::string_view subject, const std::string& name) {
    if (candidate.definition == Definition::hostMethod) {
        return fmt::format("{} is a built-in method of the host", subject);
    }
    return fileDefinition(candidate.definition, candidate.result.path, candidate.definedName, subject, name);
}

std::string userReason(const Candidate& candidate, std::string_view subject) {
    switch (candidate.ownership) {
    case Ownership::user:
        return fmt::format("{} is the user's own", subject);
    case Ownership::noHostFile:
        return fmt::format("{} is a {}, which is never the user's own", subject, kindWords(candidate.result.type));
    case Ownership::sourceCode:
        return fmt::format("{} is host code: its path begins with the source-code folder {}", subject,
                           inUTF8(candidate.hostFolder));
    case Ownership::supportPackage:
        break;
    }
    return fmt::format("{} is host code: its path begins with the support-package root {}", subject,
                       inUTF8(candidate.hostFolder));
}

std::string supportReason(const Candidate& candidate, std::string_view subject, const std::string& name) {
    switch (candidate.support) {
    case Support::KELBuiltin:
        return fmt::format("{} is supported, like every KEL built-in", subject);
    case Support::recorded:
        return fmt::format("{} is supported by its record", subject);
    case Support::hostBuiltin:
        return fmt::format("{} is not supported, like every host built-in", subject);
    case Support::noRecord:
        return fmt::format("{} is not supported: it has no record", subject);
    case Support::noFlag:
        return fmt::format("{} is not supported: its record sets no flag", subject);
    case Support::unsupportedName:
        break;
    }
    return fmt::format("{} is not supported: its record lists {} as unsupported", subject, name);
}

std::string sourceFileReason(const Candidate& candidate, std::string_view subject) {
    if (!analysis::isFile(candidate.result.type)) {
        return fmt::format("{} is a built-in", subject);
    }
    return fmt::format("{} is {} source file of the host language", subject, candidate.sourceFile ? "a" : "not a");
}

std::string kindReason(const Candidate& candidate, std::string_view subject) {
    return fmt::format("{} is a {}", subject, kindWords(candidate.result.type));
}

std::string orderWords(Key key, const Candidate& earlier, const Candidate& later, const std::string& name) {
    return fmt::format("{} before {}: {}; {}", labelOf(earlier), labelOf(later),
                       escaped(reason(key, earlier, labelOf(earlier), name)),
                       escaped(reason(key, later, labelOf(later), name)));
}

} // namespace

std::string reason(Key key, const Candidate& candidate, std::string_view subject, const std::string& name) {
    switch (key) {
    case Key::direct:
        return definitionReason(candidate, subject, name);
    case Key::user:
        return userReason(candidate, subject);
    case Key::supported:
        return supportReason(candidate, subject, name);
    case Key::sourceFile:
        return sourceFileReason(candidate, subject);
    case Key::kind:
        return kindReason(candidate, subject);
    case Key::gathered:
        break;
    }
    return fmt::format("{} was found as {}", subject, sourceWords(candidate.source));
}

std::string labelOf(const Candidate& candidate) {
    return fmt::format("{}{}", candidate.repeat ? "=" : "", candidate.rank);
}

std::string orderWords(const Candidate& earlier, const Candidate& later, const std::string& name) {
    return orderWords(*earlier.ahead, earlier, later, name);
}

std::string orderWords(const analysis::Answered& earlier, const analysis::Answered& later) {
    const auto name = inUTF8(earlier.resolution->name);
    if (const auto key = analysis::keyBetween(earlier, later)) {
        return orderWords(*key, *earlier.candidate, *later.candidate, name);
    }
    const auto label = labelOf(*earlier.candidate);
    return fmt::format("{} before {}: {} is a candidate of {}, to which a record redirects", label,
                       labelOf(*later.candidate), label, escaped(name));
}

std::string sourceWords(const Explanation::Source& source) {
    const bool isRecord = source.question == Explanation::Source::Question::supportRecords;
    return fmt::format("{} {}", isRecord ? "support record" : "host answer", source.number);
}

std::optional<std::size_t> rankAllTheSame(const Explanation::Dropped& dropped,
                                          const Explanation::Resolution& resolution) {
    const auto& candidates = resolution.candidates;
    const auto same = std::find_if(candidates.begin(), candidates.end(), [&](const Candidate& candidate) {
        return candidate.result.type == dropped.result.type && candidate.result.path == dropped.result.path;
    });
    return same == candidates.end() ? std::nullopt : std::optional(same->rank);
}

std::string dropWords(const Explanation::Dropped& dropped, const Explanation::Resolution& resolution) {
    if (dropped.rule == Explanation::DropRule::privateFolder) {
        return "in a private folder, which a name without \"/\" does not reach";
    }
    const auto rank = rankAllTheSame(dropped, resolution);
    return "a support record of a host file; the host's own answer counts instead, and "
           + (rank ? fmt::format("gives this file rank {}", *rank) : "lacks this file");
}

std::string redirectWords(const Explanation::Redirect& redirect, const std::string& name) {
    if (redirect.isHonoured() && inUTF8(redirect.definedName) != name) {
        return "followed, like every redirect of a dotted name or a path";
    }
    return (redirect.isHonoured() ? "followed: " : "ignored: ")
           + fileDefinition(redirect.definition, redirect.path, redirect.definedName, "it", name);
}

std::string recordWords(const Candidate& candidate) {
    const auto& record = *candidate.record;
    const auto& flags = record.supportFlags;
    auto words = fmt::format("{} of {} flags set", std::count(flags.begin(), flags.end(), true), flags.size());
    for (const auto& symbol : record.unsupportedSymbols) {
        words += (&symbol == &record.unsupportedSymbols.front() ? ", unsupported as " : ", ") + inUTF8(symbol);
    }
    return fmt::format("{}: {}", inUTF8(record.path), words);
}

} // namespace tessgen::cli
