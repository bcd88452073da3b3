#include "SorvaneCore/Analyses/Basics/GroupComparisonTests.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/GroupMoments.h"
#include "SorvaneCore/Analyses/Basics/MeanContrast.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane {

std::string_view displayName(ANOVAVariant variant) {
    switch (variant) {
        case ANOVAVariant::classicOneWay:
            return "Classic one-way ANOVA";
        case ANOVAVariant::welch:
            return "Welch ANOVA";
        case ANOVAVariant::brownForsythe:
            return "Brown-Forsythe ANOVA";
        case ANOVAVariant::kruskalWallis:
            break;
    }
    return "Kruskal-Wallis";
}

namespace GroupComparisonTests {

namespace {

constexpr std::size_t fewestValues = 2;

/// One standard error of a difference under a pooled mean square, and Sidak's share of the level.
struct SidakFamily {
    double pairs = 0.0;
    double meanSquare = 0.0;
    double df = 0.0;
    double tCritical = 0.0;

    ANOVAPairwiseComparison compare(const GroupMoments& i, const GroupMoments& j) const {
        const double difference = i.mean - j.mean;
        const double error = std::sqrt((1.0 / i.n + 1.0 / j.n) * meanSquare);
        const double p = MathDistributions::studentTPValue(difference / error, df);
        return {.groupI = i.name,
                .groupJ = j.name,
                .meanDifference = difference,
                .standardError = error,
                // 1 - (1 - p)^m, also where p is small.
                .pValue = std::min(1.0, -std::expm1(pairs * std::log1p(-p))),
                .lowerBound = difference - tCritical * error,
                .upperBound = difference + tCritical * error};
    }
};

std::optional<TTestResult> testAgainst(double populationMean, const GroupMoments& sample) {
    const double deviation = std::sqrt(sample.variance());
    if (!(deviation > 0.0)) {
        return std::nullopt;
    }
    const double difference = sample.mean - populationMean;
    const double t = difference / (deviation / std::sqrt(sample.n));
    return TTestResult{.t = t,
                       .degreesOfFreedom = sample.n - 1.0,
                       .pValue = MathDistributions::studentTPValue(t, sample.n - 1.0),
                       .effectSizeD = difference / deviation,
                       .meanDifference = difference};
}

}  // namespace

std::optional<TTestResult> oneSampleTTest(std::span<const double> values, double populationMean) {
    if (values.size() < fewestValues) {
        return std::nullopt;
    }
    return testAgainst(populationMean, GroupMoments::of(values));
}

std::optional<TTestResult> pairedSamplesTTest(std::span<const double> before,
                                              std::span<const double> after) {
    if (before.size() != after.size() || before.size() < fewestValues) {
        return std::nullopt;
    }
    return testAgainst(0.0, GroupMoments::ofDifferences(before, after));
}

std::optional<TTestResult> pairedSamplesTTest(std::span<const std::optional<double>> before,
                                              std::span<const std::optional<double>> after) {
    if (before.size() != after.size()) {
        return std::nullopt;
    }
    const CompleteCases::Pairs pairs = CompleteCases::pairs(before, after);
    return pairedSamplesTTest(pairs.x, pairs.y);
}

std::optional<TTestResult> independentSamplesTTest(std::span<const double> a,
                                                   std::span<const double> b,
                                                   VarianceAssumption variances) {
    if (a.size() < fewestValues || b.size() < fewestValues) {
        return std::nullopt;
    }
    const auto contrast = MeanContrast::of(GroupMoments::of(a), GroupMoments::of(b), variances);
    if (!contrast) {
        return std::nullopt;
    }
    const double t = contrast->difference / contrast->standardError;
    return TTestResult{.t = t,
                       .degreesOfFreedom = contrast->df,
                       .pValue = MathDistributions::studentTPValue(t, contrast->df),
                       .effectSizeD = contrast->cohensD,
                       .meanDifference = contrast->difference};
}

std::optional<ANOVAResult> oneWayANOVA(std::span<const NamedNumericGroup> groups) {
    const std::vector<GroupMoments> moments = GroupMoments::ofGroups(groups, fewestValues);
    const double within = GroupMoments::squaresWithin(moments);
    if (moments.size() < 2 || !(within > 0.0)) {
        return std::nullopt;
    }
    const double between = GroupMoments::squaresBetween(moments);
    const double dfBetween = static_cast<double>(moments.size()) - 1.0;
    const double dfWithin = GroupMoments::total(moments) - static_cast<double>(moments.size());
    const double f = between / dfBetween / (within / dfWithin);
    return ANOVAResult{.variant = ANOVAVariant::classicOneWay,
                       .f = f,
                       .dfBetween = static_cast<std::int64_t>(dfBetween),
                       .dfWithin = static_cast<std::int64_t>(dfWithin),
                       .dfNumerator = dfBetween,
                       .dfDenominator = dfWithin,
                       .pValue = MathDistributions::fRightTailPValue(f, dfBetween, dfWithin),
                       .etaSquared = between / (between + within),
                       .ssBetween = between,
                       .ssWithin = within};
}

std::vector<ANOVAPairwiseComparison> pairwiseComparisons(std::span<const NamedNumericGroup> groups,
                                                         const ANOVAResult& anova,
                                                         double familyConfidenceLevel) {
    const std::vector<GroupMoments> moments = GroupMoments::ofGroups(groups, fewestValues);
    std::vector<ANOVAPairwiseComparison> comparisons;
    if (!(familyConfidenceLevel > 0.0 && familyConfidenceLevel < 1.0) || moments.size() < 2) {
        return comparisons;
    }
    const auto k = static_cast<double>(moments.size());
    const double pairs = k * (k - 1.0) / 2.0;
    const auto df = static_cast<double>(anova.dfWithin);
    const double alpha = 1.0 - std::pow(familyConfidenceLevel, 1.0 / pairs);
    const SidakFamily family{.pairs = pairs,
                             .meanSquare = anova.ssWithin / df,
                             .df = df,
                             .tCritical = MathDistributions::studentTCritical(alpha, df)};
    for (std::size_t i = 0; i < moments.size(); ++i) {
        for (std::size_t j = i + 1; j < moments.size(); ++j) {
            comparisons.push_back(family.compare(moments[i], moments[j]));
        }
    }
    return comparisons;
}

}  // namespace GroupComparisonTests

}  // namespace sorvane
