#include "cli/reports/ReportFiles.hpp"

#include "cli/reports/Formats.hpp"
#include "standalone/files/AtomicFile.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <initializer_list>
#include <stdexcept>

namespace tessgen::cli {

struct ReportFormat {
    std::string_view name;
    standalone::Replaceable replaceable;
    std::string (*print)(const Report& report);
    bool showsNames = false;
};

namespace {

bool beginsWithOneOf(const std::string& file, std::initializer_list<std::string_view> beginnings) {
    constexpr std::size_t longest = 512; // of all beginnings
    std::string text(longest, '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [&](std::string_view beginning) { return text.starts_with(beginning); });
}

// GitHub's have no beginning but that of their first annotation.
bool isAnnotations(const std::string& file) {
    const auto beginning = [](std::string_view level) { return fmt::format("::{} {}", level, githubTitle); };
    return beginsWithOneOf(file, {beginning("error"), beginning("warning"), beginning("notice")});
}

constexpr std::string_view standardOutput = "-";
constexpr std::string_view github = "github"; // lines for the log of a job, beside others

constexpr auto formats = std::to_array<ReportFormat>({
    {"json",
     {"a JSON report of kelwhich", "--report",
      [](const std::string& f) { return beginsWithOneOf(f, {jsonBeginning}); }},
     jsonReport},
    {"sarif",
     {"a SARIF report of kelwhich", "--report",
      [](const std::string& f) { return beginsWithOneOf(f, {sarifBeginning}); }},
     sarifReport},
    {"junit",
     {"a JUnit report of kelwhich", "--report",
      [](const std::string& f) { return beginsWithOneOf(f, {junitBeginning}); }},
     junitReport},
    {"gitlab",
     {"a code-quality report of kelwhich", "--report",
      [](const std::string& f) {
          return beginsWithOneOf(f, {gitlabBeginning, gitlabNothing});
      }},
     gitlabReport},
    {"html",
     {"an HTML report of kelwhich", "--report",
      [](const std::string& f) { return beginsWithOneOf(f, {htmlBeginning}); }},
     htmlReport,
     true},
    {github, {"a file of kelwhich's annotations", "--report", isAnnotations}, githubReport},
});

// GitHub takes a line of the log for a command that begins with "::", blanks aside, or holds "##[": with the first
// character of these escaped.
std::string withoutCommands(std::string_view text) {
    std::string out;
    bool isBeginning = true; // of a line
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto rest = text.substr(at);
        const bool isCommand = (isBeginning && rest.starts_with("::")) || rest.starts_with("##[");
        isBeginning = rest.front() == '\n' || (isBeginning && rest.front() == ' ');
        out +=
            isCommand ? fmt::format("\\u{{{:X}}}", static_cast<unsigned>(rest.front())) : std::string(1, rest.front());
    }
    return out;
}

[[noreturn]] void refuseReport(std::string_view argument, std::string_view why) {
    throw std::runtime_error(fmt::format("--report: '{}' {}", argument, why));
}

} // namespace

void addReport(ReportTargets& targets, std::string_view argument) {
    const auto end = std::min(argument.find('='), argument.size());
    const auto name = argument.substr(0, end);
    const std::string file(argument.substr(std::min(end + 1, argument.size())));
    const auto* const format =
        std::find_if(formats.begin(), formats.end(), [&](const auto& known) { return known.name == name; });
    if (format == formats.end() || file.empty()) {
        refuseReport(argument, "is not FORMAT=FILE; FORMAT is json, sarif, junit, gitlab, github or html");
    }
    if (file == standardOutput && name != github) {
        refuseReport(argument, "would mix with the text on standard output; name a file");
    }
    if (std::any_of(targets.begin(), targets.end(), [&](const auto& target) { return target.file == file; })) {
        refuseReport(argument, "names a file that another report goes to; name another one");
    }
    targets.push_back({format, file});
}

bool showNames(const ReportTargets& targets) {
    return std::any_of(targets.begin(), targets.end(), [](const auto& target) { return target.format->showsNames; });
}

void requireReplaceable(const ReportTargets& targets) {
    for (const auto& [format, file] : targets) {
        if (file != standardOutput) {
            standalone::requireReplaceable(file, format->replaceable);
        }
    }
}

std::string withReports(std::string text, const ReportTargets& targets, const Report& report) {
    std::string onOutput;
    for (const auto& [format, file] : targets) {
        if (file == standardOutput) {
            text = withoutCommands(text);
            onOutput = format->print(report);
            continue;
        }
        standalone::AtomicFile target(file, format->replaceable);
        target.append(format->print(report));
        target.commit();
    }
    return text + onOutput;
}

} // namespace tessgen::cli
