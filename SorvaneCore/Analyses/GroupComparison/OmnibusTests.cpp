#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/GroupMoments.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonEngine.h"
#include "SorvaneCore/Analyses/GroupComparison/RankedGroups.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::GroupComparisonEngine {

namespace {

constexpr std::size_t fewestValues = 2;

/// An F test on k - 1 and fractional denominator degrees of freedom; absent without these.
std::optional<ANOVAResult> approximateF(ANOVAVariant variant, double f, double df1, double df2) {
    if (!std::isfinite(f) || !std::isfinite(df2) || df2 <= 0.0) {
        return std::nullopt;
    }
    return ANOVAResult{.variant = variant,
                       .f = f,
                       .dfBetween = static_cast<std::int64_t>(df1),
                       .dfWithin = static_cast<std::int64_t>(std::max(std::round(df2), 1.0)),
                       .dfNumerator = df1,
                       .dfDenominator = df2,
                       .pValue = MathDistributions::fRightTailPValue(f, df1, df2)};
}

}  // namespace

std::optional<ANOVAResult> welchANOVA(std::span<const NamedNumericGroup> groups) {
    std::vector<GroupMoments> moments = GroupMoments::ofGroups(groups, fewestValues);
    std::erase_if(moments, [](const GroupMoments& group) { return !(group.variance() > 0.0); });
    if (moments.size() < 2) {
        return std::nullopt;
    }
    const auto k = static_cast<double>(moments.size());
    double weights = 0.0;
    double weightedMean = 0.0;
    for (const GroupMoments& group : moments) {
        const double weight = 1.0 / group.squaredError();
        weights += weight;
        weightedMean += weight * (group.mean - moments.front().mean);
    }
    weightedMean = moments.front().mean + weightedMean / weights;
    double between = 0.0;
    double imbalance = 0.0;
    for (const GroupMoments& group : moments) {
        const double weight = 1.0 / group.squaredError();
        const double rest = 1.0 - weight / weights;
        between += weight * (group.mean - weightedMean) * (group.mean - weightedMean);
        imbalance += rest * rest / (group.n - 1.0);
    }
    const double f = between / (k - 1.0) / (1.0 + 2.0 * (k - 2.0) * imbalance / (k * k - 1.0));
    return approximateF(ANOVAVariant::welch, f, k - 1.0, (k * k - 1.0) / (3.0 * imbalance));
}

std::optional<ANOVAResult> brownForsytheANOVA(std::span<const NamedNumericGroup> groups) {
    const std::vector<GroupMoments> moments = GroupMoments::ofGroups(groups, fewestValues);
    if (moments.size() < 2) {
        return std::nullopt;
    }
    const double total = GroupMoments::total(moments);
    double denominator = 0.0;
    double squares = 0.0;
    for (const GroupMoments& group : moments) {
        const double part = (1.0 - group.n / total) * group.variance();
        denominator += part;
        squares += part * part / (group.n - 1.0);
    }
    if (!(denominator > 0.0) || !(squares > 0.0)) {
        return std::nullopt;
    }
    const double between = GroupMoments::squaresBetween(moments);
    auto result = approximateF(ANOVAVariant::brownForsythe, between / denominator,
                               static_cast<double>(moments.size()) - 1.0,
                               denominator * denominator / squares);
    if (result) {
        result->ssBetween = between;
        result->ssWithin = denominator;
    }
    return result;
}

std::optional<ANOVAResult> kruskalWallis(std::span<const NamedNumericGroup> groups) {
    const RankedGroups ranked = RankedGroups::of(groups);
    if (ranked.groups.size() < 2) {
        return std::nullopt;
    }
    const double n = ranked.n;
    const auto k = static_cast<double>(ranked.groups.size());
    double h = 0.0;
    for (const RankedGroups::Group& group : ranked.groups) {
        const double deviation = group.meanRank - (n + 1.0) / 2.0;
        h += group.n * deviation * deviation;
    }
    h *= 12.0 / (n * (n + 1.0));
    const double tieCorrection = 1.0 - ranked.tieSum / (n * n * n - n);
    if (tieCorrection > 0.0) {
        h /= tieCorrection;
    }
    const double epsilonSquared = (h - k + 1.0) / (n - k);
    return ANOVAResult{.variant = ANOVAVariant::kruskalWallis,
                       .f = h,
                       .dfBetween = static_cast<std::int64_t>(k - 1.0),
                       .dfWithin = static_cast<std::int64_t>(n - k),
                       .dfNumerator = k - 1.0,
                       .dfDenominator = n - k,
                       .pValue = MathDistributions::chiSquareRightTailPValue(h, k - 1.0),
                       .etaSquared = epsilonSquared < 0.0 ? 0.0 : epsilonSquared};
}

}  // namespace sorvane::GroupComparisonEngine
