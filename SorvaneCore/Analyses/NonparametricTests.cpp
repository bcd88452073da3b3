#include "SorvaneCore/Analyses/NonparametricTests.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/OrderedClasses.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::NonparametricTests {

namespace {

/// The two-sided normal tail.
double normalTail(double z) {
    if (!std::isfinite(z)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const double tail = 2.0 * (1.0 - MathDistributions::standardNormalCDF(std::abs(z)));
    return std::clamp(tail, 0.0, 1.0);
}

/// The sum of t^3 - t over groups of t equal values.
double tieSum(const OrderedClasses& classes) {
    double sum = 0.0;
    for (const std::uint32_t count : classes.counts) {
        const auto t = static_cast<double>(count);
        sum += t * (t - 1.0) * (t + 1.0);
    }
    return sum;
}

/// Adds the midranks of the values among themselves to the sums of their places.
void addMidranks(std::span<const double> values, std::vector<double>& sums) {
    if (SampleMoments::areEqual(values)) {
        for (double& sum : sums) {
            sum += 0.5 * (static_cast<double>(values.size()) + 1.0);
        }
        return;
    }
    // By comparing all pairs: conditions are few, and this needs no memory of its own.
    for (std::size_t i = 0; i < values.size(); ++i) {
        double rank = 0.5;
        for (const double other : values) {
            rank += other < values[i] ? 1.0 : (other == values[i] ? 0.5 : 0.0);
        }
        sums[i] += rank;
    }
}

FriedmanResult friedmanOf(std::span<const double> rankSums, std::size_t subjects) {
    const auto n = static_cast<double>(subjects);
    const auto k = static_cast<double>(rankSums.size());
    // 12/(nk(k+1)) times the sum of R^2, less 3n(k+1), as deviations: rank sums have a fixed mean.
    const double mean = n * (k + 1.0) / 2.0;
    double squares = 0.0;
    for (const double sum : rankSums) {
        squares += (sum - mean) * (sum - mean);
    }
    const double chiSquare = 12.0 * squares / (n * k * (k + 1.0));
    return {.chiSquare = chiSquare,
            .degreesOfFreedom = static_cast<std::int64_t>(rankSums.size()) - 1,
            .pValue = MathDistributions::chiSquareRightTailPValue(chiSquare, k - 1.0),
            .kendallsW = chiSquare / (n * (k - 1.0)),
            .subjects = static_cast<std::int64_t>(subjects),
            .conditions = static_cast<std::int64_t>(rankSums.size())};
}

}  // namespace

std::optional<MannWhitneyResult> mannWhitneyU(std::span<const double> group1,
                                              std::span<const double> group2) {
    if (group1.empty() || group2.empty()) {
        return std::nullopt;
    }
    std::vector<double> pooled(group1.begin(), group1.end());
    pooled.insert(pooled.end(), group2.begin(), group2.end());
    if (SampleMoments::areEqual(pooled)) {
        return std::nullopt;
    }
    const OrderedClasses classes = OrderedClasses::of(pooled);
    const std::vector<double> midranks = classes.midranks();
    double rankSum = 0.0;
    for (std::size_t i = 0; i < group1.size(); ++i) {
        rankSum += midranks[classes.classOf[i]];
    }
    const auto n1 = static_cast<double>(group1.size());
    const auto n2 = static_cast<double>(group2.size());
    const double n = n1 + n2;
    const double u1 = rankSum - n1 * (n1 + 1.0) / 2.0;
    const double variance = n1 * n2 / 12.0 * (n + 1.0 - tieSum(classes) / (n * (n - 1.0)));
    if (!(variance > 0.0)) {
        return std::nullopt;
    }
    const double z = (u1 - n1 * n2 / 2.0) / std::sqrt(variance);
    return MannWhitneyResult{.u = std::min(u1, n1 * n2 - u1),
                             .z = z,
                             .pValue = normalTail(z),
                             .effectSizeR = std::abs(z) / std::sqrt(n),
                             .n1 = static_cast<std::int64_t>(group1.size()),
                             .n2 = static_cast<std::int64_t>(group2.size())};
}

std::optional<SignedRankResult> wilcoxonSignedRank(std::span<const double> before,
                                                   std::span<const double> after) {
    if (before.size() != after.size()) {
        return std::nullopt;
    }
    std::vector<double> sizes;
    std::vector<bool> isPositive;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const double difference = after[i] - before[i];
        if (!SampleMoments::areEqual(std::array{before[i], after[i]})) {
            sizes.push_back(std::abs(difference));
            isPositive.push_back(difference > 0.0);
        }
    }
    if (sizes.empty()) {
        return std::nullopt;
    }
    const OrderedClasses classes = OrderedClasses::of(sizes);
    const std::vector<double> midranks = classes.midranks();
    double wPlus = 0.0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        wPlus += isPositive[i] ? midranks[classes.classOf[i]] : 0.0;
    }
    const auto n = static_cast<double>(sizes.size());
    const double variance = n * (n + 1.0) * (2.0 * n + 1.0) / 24.0;
    const double z = (wPlus - n * (n + 1.0) / 4.0) / std::sqrt(variance);
    return SignedRankResult{.wPlus = wPlus,
                            .z = z,
                            .pValue = normalTail(z),
                            .effectSizeR = std::abs(z) / std::sqrt(n),
                            .n = static_cast<std::int64_t>(sizes.size())};
}

std::optional<SignedRankResult> wilcoxonSignedRank(const NumericColumn& before,
                                                   const NumericColumn& after) {
    if (before.size() != after.size()) {
        return std::nullopt;
    }
    const std::array columns = {&before, &after};
    const std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    return wilcoxonSignedRank(CompleteCases::gathered(before, rows),
                              CompleteCases::gathered(after, rows));
}

std::optional<FriedmanResult> friedman(std::span<const std::vector<double>> rowsBySubject) {
    if (rowsBySubject.empty() || rowsBySubject.front().size() < 2) {
        return std::nullopt;
    }
    std::vector<double> rankSums(rowsBySubject.front().size(), 0.0);
    for (const std::vector<double>& row : rowsBySubject) {
        if (row.size() != rankSums.size()) {
            return std::nullopt;
        }
        addMidranks(row, rankSums);
    }
    return friedmanOf(rankSums, rowsBySubject.size());
}

std::optional<FriedmanResult> friedman(std::span<const NumericColumn> conditions) {
    std::vector<const NumericColumn*> columns;
    for (const NumericColumn& condition : conditions) {
        if (condition.size() != conditions.front().size()) {
            return std::nullopt;
        }
        columns.push_back(&condition);
    }
    const std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    if (conditions.size() < 2 || rows.empty()) {
        return std::nullopt;
    }
    std::vector<double> rankSums(conditions.size(), 0.0);
    std::vector<double> values(conditions.size());
    for (const std::uint32_t row : rows) {
        for (std::size_t j = 0; j < values.size(); ++j) {
            values[j] = *conditions[j][row];
        }
        addMidranks(values, rankSums);
    }
    return friedmanOf(rankSums, rows.size());
}

}  // namespace sorvane::NonparametricTests
