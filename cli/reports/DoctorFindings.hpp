// The doctor's diagnostics as findings of the type that every analysis reports.
//
// A place that is not UTF-8 is escaped. Threads: any.
#pragma once

#include "analysis/Finding.hpp"
#include "analysis/Rules.hpp"
#include "standalone/doctor/Diagnosis.hpp"

#include <vector>

namespace tessgen::cli {

analysis::Finding asFinding(const standalone::Finding& finding);

// One for each diagnostic.
std::vector<analysis::Rule> doctorRules();

} // namespace tessgen::cli
