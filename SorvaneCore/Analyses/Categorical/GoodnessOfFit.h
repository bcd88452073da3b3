#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

struct GoodnessOfFitResult {
    double statistic = 0.0;
    std::int64_t degreesOfFreedom = 0;
    double pValue = 1.0;
    std::vector<std::string> categoryLabels{};
    std::vector<std::int64_t> observed{};
    std::vector<double> expected{};
    std::vector<std::string> warnings{};
    AnalysisReadiness readiness{};

    bool operator==(const GoodnessOfFitResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    GoodnessOfFitResult,
    (),
    (statistic, degreesOfFreedom, pValue, categoryLabels, observed, expected, warnings, readiness))

/// Pearson's chi-square test of counts against expected proportions.
///
/// Input      proportions are divided by their sum; a list without one for every category, an
///            empty one included, means equal proportions
/// Failure    fewer than two categories, a negative count, a total of 0, or a proportion that is
///            not above 0 -> absent
namespace GoodnessOfFit {

/// Input      labels without one for every count are replaced by "Category 1" and so on
std::optional<GoodnessOfFitResult> chiSquare(std::span<const std::int64_t> observed,
                                             std::span<const std::string> categoryLabels,
                                             std::span<const double> expectedProportions);

/// Input      missing cells are left out; categories are in order of first appearance
std::optional<GoodnessOfFitResult> chiSquare(const TextColumn& categories,
                                             std::span<const double> expectedProportions);

}  // namespace GoodnessOfFit

}  // namespace sorvane
