#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"

namespace sorvane {

enum class WarningLevel { info, caution, serious };
BOOST_DESCRIBE_ENUM(WarningLevel, info, caution, serious)

/// What the deviations of Levene's test are taken from.
enum class LeveneCenter { mean, median };
BOOST_DESCRIBE_ENUM(LeveneCenter, mean, median)

/// A test of equal variances.
struct HomogeneityTestResult {
    /// "Levene" about the mean, "Brown-Forsythe" about the median.
    std::string testName{};
    double statistic = 0.0;
    double df1 = 0.0;
    double df2 = 0.0;
    double pValue = 1.0;
    std::string interpretation{};
    WarningLevel warningLevel = WarningLevel::info;

    bool operator==(const HomogeneityTestResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(HomogeneityTestResult,
                      (),
                      (testName, statistic, df1, df2, pValue, interpretation, warningLevel))

/// Whether groups vary alike.
namespace HomogeneityTests {

/// The classic analysis of variance of the absolute deviations from each group's centre.
///
/// Input      groups of fewer than two values are left out
/// Failure    fewer than two groups, or deviations that are alike within every group but for
///            rounding -> absent
/// Cost       O(n); a selection for the median
std::optional<HomogeneityTestResult> leveneTest(std::span<const NamedNumericGroup> groups,
                                                LeveneCenter center);

/// Those of the two that can be had, about the mean first.
std::vector<HomogeneityTestResult> homogeneityTests(std::span<const NamedNumericGroup> groups);

}  // namespace HomogeneityTests

}  // namespace sorvane
