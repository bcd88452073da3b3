#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Multivariate/CanonicalCorrelation.h"

/// The sentences of canonical correlation.
namespace sorvane::CanonicalWording {

inline constexpr std::string_view minimumRequired =
    "one or more numeric variables in each of two sets that share none, and more cases than "
    "variables";

std::string inBothSets(const std::string& name);
std::string tooFewCases(std::int64_t n, std::int64_t variables);
/// Input      what the set is called: "first" or "second"
std::string collinear(const std::string& set);
std::string perfect();
std::string noEigenvalues();
std::string rowsDropped(std::int64_t rows);
std::string fewCasesPerVariable(std::int64_t n, std::int64_t variables);

/// What was found, in two sentences; empty for a blocked result.
std::string summary(const CanonicalCorrelationResult& result);
/// What must not be claimed from it.
std::vector<std::string> cautions();

}  // namespace sorvane::CanonicalWording
