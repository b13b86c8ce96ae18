// The formats of reports: one function each, which prints a whole report.
//
// Each begins in the same way whatever was found, so that a report of the program is recognised.
// Threads: any.
#pragma once

#include "cli/reports/Report.hpp"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace tessgen::cli {

// Why a known finding is passed over.
inline constexpr std::string_view knownWords = "listed in the baseline";

// An element of the list of findings.
nlohmann::ordered_json document(const ReportEntry& entry);

inline constexpr std::string_view jsonBeginning = R"({"schema":"kelwhich/1","findings":[)";
std::string jsonReport(const Report& report);

// SARIF 2.1.0, for code scanning.
inline constexpr std::string_view sarifBeginning =
    R"({"$schema":"https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json",)"
    R"("version":"2.1.0","runs":[{"tool":{"driver":{"name":"kelwhich",)";
std::string sarifReport(const Report& report);

// JUnit: a test case for each finding, which fails, but for notes, and is skipped when it is known; and one for each
// code that was not found. No more than what Jenkins' schema knows, so that strict readers take it.
inline constexpr std::string_view junitBeginning =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"kelwhich ";
std::string junitReport(const Report& report);

// GitLab's code quality.
inline constexpr std::string_view gitlabBeginning = "[\n{\"engine_name\":\"kelwhich\",";
inline constexpr std::string_view gitlabNothing = "[]\n";
std::string gitlabReport(const Report& report);

// Annotations of GitHub, which shows ten of a level: the first ten, then how many there are beyond.
inline constexpr std::string_view githubTitle = "title=kelwhich "; // after the level
std::string githubReport(const Report& report);

// A page for people, which needs no network.
inline constexpr std::string_view htmlBeginning =
    "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
    "<meta name=\"generator\" content=\"kelwhich\">\n";
std::string htmlReport(const Report& report);

} // namespace tessgen::cli
