#include "SorvaneCore/Analyses/Basics/HomogeneityTests.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Analyses/Basics/GroupComparisonTests.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

namespace sorvane::HomogeneityTests {

namespace {

constexpr double significance = 0.05;

double centerOf(std::span<const double> values, LeveneCenter center) {
    return center == LeveneCenter::mean ? SampleMoments::mean(values)
                                        : *DescriptiveStatistics::median(values);
}

/// The groups with the distance of each value from its group's centre in its place.
std::vector<NamedNumericGroup> deviations(std::span<const NamedNumericGroup> groups,
                                          LeveneCenter center) {
    std::vector<NamedNumericGroup> result;
    for (const NamedNumericGroup& group : groups) {
        if (group.values.size() < 2) {
            continue;
        }
        const double middle = centerOf(group.values, center);
        NamedNumericGroup distances{.name = group.name,
                                    .values = std::vector<double>(group.values.size())};
        std::ranges::transform(group.values, distances.values.begin(),
                               [middle](double value) { return std::abs(value - middle); });
        result.push_back(std::move(distances));
    }
    return result;
}

/// The most that rounding alone can leave of the sum of squares within groups: in groups of two,
/// both values are equally far from the centre, and only rounding tells them apart.
double squaresOfRounding(std::span<const NamedNumericGroup> groups) {
    double squares = 0.0;
    for (const NamedNumericGroup& group : groups) {
        squares += SampleMoments::squaresOfRounding(group.values.size(),
                                                    SampleMoments::largestMagnitude(group.values));
    }
    return squares;
}

std::string interpretation(const std::string& testName, bool flagged) {
    return testName + (flagged ? " test suggests unequal variances (p < .05)."
                               : " test does not flag unequal variances at p < .05.");
}

}  // namespace

std::optional<HomogeneityTestResult> leveneTest(std::span<const NamedNumericGroup> groups,
                                                LeveneCenter center) {
    const auto anova = GroupComparisonTests::oneWayANOVA(deviations(groups, center));
    if (!anova || anova->ssWithin <= squaresOfRounding(groups)) {
        return std::nullopt;
    }
    const std::string name = center == LeveneCenter::mean ? "Levene" : "Brown-Forsythe";
    const bool flagged = anova->pValue < significance;
    return HomogeneityTestResult{
        .testName = name,
        .statistic = anova->f,
        .df1 = anova->dfNumerator,
        .df2 = anova->dfDenominator,
        .pValue = anova->pValue,
        .interpretation = interpretation(name, flagged),
        .warningLevel = flagged ? WarningLevel::caution : WarningLevel::info};
}

std::vector<HomogeneityTestResult> homogeneityTests(std::span<const NamedNumericGroup> groups) {
    std::vector<HomogeneityTestResult> results;
    for (const LeveneCenter center : {LeveneCenter::mean, LeveneCenter::median}) {
        if (auto result = leveneTest(groups, center)) {
            results.push_back(std::move(*result));
        }
    }
    return results;
}

}  // namespace sorvane::HomogeneityTests
