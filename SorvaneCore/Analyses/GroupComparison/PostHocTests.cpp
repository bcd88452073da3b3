#include <algorithm>
#include <cmath>
#include <numeric>

#include "SorvaneCore/Analyses/Basics/GroupMoments.h"
#include "SorvaneCore/Analyses/Basics/MeanContrast.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonEngine.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonWording.h"
#include "SorvaneCore/Analyses/GroupComparison/RankedGroups.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::GroupComparisonEngine {

namespace {

using Comparisons = std::vector<PairwiseComparisonResult>;

constexpr double significance = 0.05;
/// Below this the distribution of the studentized range is not defined.
constexpr double fewestRangeDf = 2.0;

/// Calls `compare(a, b)` for every pair in order.
template <typename Group, typename Compare>
void forEachPair(const std::vector<Group>& groups, const Compare& compare) {
    for (std::size_t i = 0; i < groups.size(); ++i) {
        for (std::size_t j = i + 1; j < groups.size(); ++j) {
            compare(groups[i], groups[j]);
        }
    }
}

/// Hedges' correction of d for small samples.
double hedgesG(double d, double df) {
    return d * (1.0 - 3.0 / (4.0 * df - 1.0));
}

void setInterval(PairwiseComparisonResult& pair, double critical) {
    pair.confidenceIntervalLower = pair.meanDifference - critical * pair.standardError;
    pair.confidenceIntervalUpper = pair.meanDifference + critical * pair.standardError;
}

/// A pair of means by q = |difference| / error; without interval and effect size.
PairwiseComparisonResult rangeComparison(MathDistributions::StudentizedRangeFamily& range,
                                         const GroupMoments& a,
                                         const GroupMoments& b,
                                         double error,
                                         double df) {
    const double q = std::abs(a.mean - b.mean) / error;
    const double p = std::clamp(1.0 - range.cdf(q, df), 0.0, 1.0);
    return {.groupA = a.name,
            .groupB = b.name,
            .meanDifference = a.mean - b.mean,
            .standardError = error,
            .testStatistic = q,
            .degreesOfFreedom = df,
            .rawPValue = p,
            .adjustedPValue = p};
}

void setEffect(PairwiseComparisonResult& pair, double d) {
    pair.effectSize = d;
    if (*pair.degreesOfFreedom > 1.0) {
        pair.hedgesG = hedgesG(d, *pair.degreesOfFreedom);
    }
}

/// Adjusts the raw p-values of a whole family.
void adjustFamily(Comparisons& family, PostHocMethod method) {
    std::vector<double> raw;
    for (const PairwiseComparisonResult& pair : family) {
        raw.push_back(pair.rawPValue);
    }
    const std::vector<double> adjusted = adjust(raw, method);
    for (std::size_t i = 0; i < family.size(); ++i) {
        family[i].adjustedPValue = adjusted[i];
    }
}

Comparisons labelled(Comparisons family, PostHocMethod method) {
    for (PairwiseComparisonResult& pair : family) {
        pair.method = displayName(method);
        pair.interpretation =
            GroupComparisonWording::pairInterpretation(pair, pair.adjustedPValue < significance);
    }
    return family;
}

/// Holm: the smallest p times m, the next times m - 1 and so on, never below the one before.
std::vector<double> holm(std::span<const double> pValues) {
    std::vector<std::size_t> order(pValues.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [pValues](std::size_t index) { return pValues[index]; });
    std::vector<double> adjusted(pValues.size());
    double running = 0.0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const auto left = static_cast<double>(order.size() - i);
        running = std::max(running, std::min(1.0, pValues[order[i]] * left));
        adjusted[order[i]] = running;
    }
    return adjusted;
}

}  // namespace

Comparisons tukeyHSD(std::span<const NamedNumericGroup> groups,
                     double msWithin,
                     std::int64_t dfWithin) {
    const std::vector<GroupMoments> moments = GroupMoments::ofGroups(groups, 1);
    const auto df = static_cast<double>(dfWithin);
    if (moments.size() < 2 || !(msWithin > 0.0) || df < fewestRangeDf) {
        return {};
    }
    MathDistributions::StudentizedRangeFamily range(static_cast<int>(moments.size()));
    const double critical = range.quantile(1.0 - significance, df);
    Comparisons family;
    forEachPair(moments, [&](const GroupMoments& a, const GroupMoments& b) {
        const double error = std::sqrt(msWithin / 2.0 * (1.0 / a.n + 1.0 / b.n));
        PairwiseComparisonResult pair = rangeComparison(range, a, b, error, df);
        setInterval(pair, critical);
        setEffect(pair, pair.meanDifference / std::sqrt(msWithin));
        family.push_back(std::move(pair));
    });
    return labelled(std::move(family), PostHocMethod::tukeyHSD);
}

Comparisons gamesHowell(std::span<const NamedNumericGroup> groups) {
    const std::vector<GroupMoments> moments = GroupMoments::ofGroups(groups, 2);
    MathDistributions::StudentizedRangeFamily range(static_cast<int>(moments.size()));
    Comparisons family;
    forEachPair(moments, [&](const GroupMoments& a, const GroupMoments& b) {
        const double error = std::sqrt((a.squaredError() + b.squaredError()) / 2.0);
        const double df = satterthwaiteDf(a, b);
        if (!(error > 0.0) || !(df >= fewestRangeDf)) {
            return;
        }
        PairwiseComparisonResult pair = rangeComparison(range, a, b, error, df);
        setInterval(pair, range.quantile(1.0 - significance, df));
        const double meanVariance = (a.variance() + b.variance()) / 2.0;
        setEffect(pair, meanVariance > 0.0 ? pair.meanDifference / std::sqrt(meanVariance) : 0.0);
        family.push_back(std::move(pair));
    });
    return labelled(std::move(family), PostHocMethod::gamesHowell);
}

Comparisons dunnTest(std::span<const NamedNumericGroup> groups) {
    const RankedGroups ranked = RankedGroups::of(groups);
    const double n = ranked.n;
    const double variance = n * (n + 1.0) / 12.0 - ranked.tieSum / (12.0 * (n - 1.0));
    Comparisons family;
    if (!(variance > 0.0)) {
        return family;
    }
    forEachPair(ranked.groups, [&](const RankedGroups::Group& a, const RankedGroups::Group& b) {
        const double error = std::sqrt(variance * (1.0 / a.n + 1.0 / b.n));
        const double difference = a.meanRank - b.meanRank;
        const double z = difference / error;
        const double tail = 2.0 * (1.0 - MathDistributions::standardNormalCDF(std::abs(z)));
        family.push_back({.groupA = a.name,
                          .groupB = b.name,
                          .meanDifference = difference,
                          .standardError = error,
                          .testStatistic = z,
                          .rawPValue = std::clamp(tail, 0.0, 1.0)});
    });
    adjustFamily(family, PostHocMethod::holmPairwiseT);
    return labelled(std::move(family), PostHocMethod::dunn);
}

Comparisons pairwiseTTests(std::span<const NamedNumericGroup> groups,
                           PostHocMethod method,
                           VarianceAssumption variances) {
    const std::vector<GroupMoments> moments = GroupMoments::ofGroups(groups, 2);
    Comparisons family;
    forEachPair(moments, [&](const GroupMoments& a, const GroupMoments& b) {
        const auto contrast = MeanContrast::of(a, b, variances);
        if (!contrast) {
            return;
        }
        const double t = contrast->difference / contrast->standardError;
        PairwiseComparisonResult pair{.groupA = a.name,
                                      .groupB = b.name,
                                      .meanDifference = contrast->difference,
                                      .standardError = contrast->standardError,
                                      .testStatistic = t,
                                      .degreesOfFreedom = contrast->df};
        pair.rawPValue = MathDistributions::studentTPValue(t, contrast->df);
        setInterval(pair, MathDistributions::studentTCritical(significance, contrast->df));
        pair.effectSize = contrast->cohensD;
        pair.hedgesG = hedgesG(contrast->cohensD, contrast->df);
        family.push_back(std::move(pair));
    });
    adjustFamily(family, method);
    return labelled(std::move(family), method);
}

std::vector<double> adjust(std::span<const double> pValues, PostHocMethod method) {
    if (method == PostHocMethod::holmPairwiseT) {
        return holm(pValues);
    }
    std::vector<double> adjusted(pValues.begin(), pValues.end());
    if (method == PostHocMethod::bonferroniPairwiseT) {
        for (double& p : adjusted) {
            p = std::min(1.0, p * static_cast<double>(pValues.size()));
        }
    }
    return adjusted;
}

}  // namespace sorvane::GroupComparisonEngine
