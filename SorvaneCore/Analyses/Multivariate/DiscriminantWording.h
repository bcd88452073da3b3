#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Multivariate/DiscriminantAnalysis.h"

/// The sentences of discriminant analysis.
namespace sorvane::DiscriminantWording {

inline constexpr std::string_view minimumRequired =
    "two or more groups, two or more numeric variables, and more cases than groups plus variables";

std::string tooFewGroups(std::int64_t groups);
std::string tooFewCases(std::int64_t n, std::int64_t predictors, std::int64_t groups);
std::string singular();
std::string noEigenvalues();
std::string rowsDropped(std::int64_t rows);
std::string thinGroups(std::int64_t smallestGroup);
std::string fewerCasesThanVariables(std::int64_t smallestGroup, std::int64_t predictors);
std::string noBetterThanLargestGroup(double accuracy, double largestGroupShare);

/// What was found, in one or two sentences; empty for a blocked result.
std::string summary(const DiscriminantResult& result);
/// What must not be claimed from it.
std::vector<std::string> cautions();

}  // namespace sorvane::DiscriminantWording
