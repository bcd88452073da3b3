#include "SorvaneCore/Survey/SurveyShares.h"

#include <array>
#include <cmath>
#include <numeric>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

namespace {

using Numbers = std::vector<double>;
using SurveyShares::withinRow;
using SurveyVariance::DesignCovariance;

Numbers linearizedCovariance(const SurveyTable& table,
                             std::span<const double> shares,
                             const SampledDesign& sampled) {
    const SurveyDesign& design = sampled.design;
    const std::size_t cells = table.cellCount();
    const double sum = design.sumOfWeights(table.rows);
    Numbers scores(design.weights.size() * cells, 0.0);
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        const std::size_t row = table.rows[i];
        for (std::size_t cell = 0; cell < cells; ++cell) {
            const double isThere = table.cellOfRow[i] == cell ? 1.0 : 0.0;
            scores[row * cells + cell] = design.weights[row] / sum * (isThere - shares[cell]);
        }
    }
    return SurveyVariance::scoreCovariance(scores, sampled, cells, table.rows);
}

/// The shares under each replicate; absent where it gives no row weight.
std::vector<std::optional<Numbers>> replicateShares(const SurveyTable& table,
                                                    const ReplicateWeights& replicates) {
    std::vector<std::optional<Numbers>> estimates(replicates.weights.size());
    parallelFor(estimates.size(), hardwareThreads(),
                [&](std::size_t r) { estimates[r] = table.shares(replicates.weights[r]); });
    return estimates;
}

/// The variances of the shares r within a row, by the covariance V of all shares: of dp_j - r_j dp,
/// over the squared share p of the row.
Numbers linearizedWithinRow(std::span<const double> shares,
                            const Numbers& covariance,
                            std::size_t row,
                            std::size_t columns) {
    // What is left where the terms cancel each other.
    constexpr double rounding = 1e-13;
    const std::size_t first = row * columns;
    const Numbers within = *withinRow(shares, row, columns);
    Numbers withWhole(columns, 0.0);
    for (std::size_t i = 0; i < columns; ++i) {
        for (std::size_t j = 0; j < columns; ++j) {
            withWhole[i] += covariance[(first + i) * shares.size() + first + j];
        }
    }
    const double ofWhole = std::accumulate(withWhole.begin(), withWhole.end(), 0.0);
    const double share =
        std::accumulate(shares.begin() + static_cast<std::ptrdiff_t>(first),
                        shares.begin() + static_cast<std::ptrdiff_t>(first + columns), 0.0);
    Numbers variances;
    for (std::size_t j = 0; j < columns; ++j) {
        const double own = covariance[(first + j) * shares.size() + first + j];
        const double apart = own + within[j] * within[j] * ofWhole;
        const double variance = apart - 2.0 * within[j] * withWhole[j];
        variances.push_back(variance > rounding * apart ? variance / (share * share) : 0.0);
    }
    return variances;
}

/// How the shares within a row vary under the replicates; absent where none gives it weight.
std::optional<DesignCovariance> replicatedWithinRow(
    std::span<const double> shares,
    std::span<const std::optional<Numbers>> estimates,
    const ReplicateWeights& replicates,
    std::size_t row,
    std::size_t columns) {
    std::vector<std::optional<Numbers>> within;
    for (const std::optional<Numbers>& each : estimates) {
        within.push_back(each ? withinRow(*each, row, columns) : std::nullopt);
    }
    return SurveyVariance::replicateCovariance(within, replicates,
                                               *withinRow(shares, row, columns));
}

SurveyShareVariances linearized(const SurveyTable& table,
                                std::span<const double> shares,
                                const SampledDesign& sampled) {
    SurveyShareVariances result;
    result.ofCells.values = linearizedCovariance(table, shares, sampled);
    result.replicatesWithoutRow.assign(table.rowLabels.size(), 0);
    for (std::size_t row = 0; row < table.rowLabels.size(); ++row) {
        const Numbers within =
            linearizedWithinRow(shares, result.ofCells.values, row, table.columnLabels.size());
        result.withinRows.insert(result.withinRows.end(), within.begin(), within.end());
    }
    return result;
}

std::optional<SurveyShareVariances> replicated(const SurveyTable& table,
                                               std::span<const double> shares,
                                               const ReplicateWeights& replicates) {
    const std::vector<std::optional<Numbers>> estimates = replicateShares(table, replicates);
    auto ofCells = SurveyVariance::replicateCovariance(estimates, replicates, shares);
    if (!ofCells) {
        return std::nullopt;
    }
    SurveyShareVariances result{.ofCells = std::move(*ofCells)};
    const std::size_t columns = table.columnLabels.size();
    for (std::size_t row = 0; row < table.rowLabels.size(); ++row) {
        const auto within = replicatedWithinRow(shares, estimates, replicates, row, columns);
        for (std::size_t j = 0; j < columns; ++j) {
            result.withinRows.push_back(within ? within->values[j * columns + j] : std::nan(""));
        }
        result.replicatesWithoutRow.push_back(within ? within->replicatesWithoutEstimates
                                                     : std::ssize(estimates));
    }
    return result;
}

}  // namespace

std::vector<std::int64_t> SurveyTable::counts() const {
    std::vector<std::int64_t> counts(cellCount(), 0);
    for (const std::size_t cell : cellOfRow) {
        ++counts[cell];
    }
    return counts;
}

std::optional<std::vector<double>> SurveyTable::shares(std::span<const double> weights) const {
    Numbers result(cellCount(), 0.0);
    double sum = 0.0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        result[cellOfRow[i]] += weights[rows[i]];
        sum += weights[rows[i]];
    }
    for (double& share : result) {
        share /= sum;
    }
    // A weight that is missing leaves shares that are none.
    return sum <= 0.0 ? std::nullopt : std::optional(std::move(result));
}

SurveyTable SurveyTable::of(const TextColumn& rows, const TextColumn& columns) {
    const std::vector<std::uint32_t> complete =
        CompleteCases::rows({}, std::array{&rows, &columns});
    CategoryCodes rowCodes = CategoryCodes::of(rows, complete);
    CategoryCodes columnCodes = CategoryCodes::of(columns, complete);
    rowCodes.sortByLabel();
    columnCodes.sortByLabel();
    SurveyTable table{.rows = {complete.begin(), complete.end()}};
    for (std::size_t i = 0; i < complete.size(); ++i) {
        table.cellOfRow.push_back(rowCodes.codes[i] * columnCodes.labels.size() +
                                  columnCodes.codes[i]);
    }
    table.rowLabels = std::move(rowCodes.labels);
    table.columnLabels = std::move(columnCodes.labels);
    return table;
}

std::optional<SurveyShareVariances> SurveyShareVariances::of(const SurveyTable& table,
                                                             std::span<const double> shares,
                                                             const SampledDesign& sampled) {
    const auto& replicates = sampled.design.replicateWeights;
    return replicates ? replicated(table, shares, *replicates)
                      : std::optional(linearized(table, shares, sampled));
}

std::optional<std::vector<double>> SurveyShares::withinRow(std::span<const double> shares,
                                                           std::size_t row,
                                                           std::size_t columns) {
    const std::span<const double> ofRow = shares.subspan(row * columns, columns);
    Numbers within(ofRow.begin(), ofRow.end());
    const double whole = std::accumulate(within.begin(), within.end(), 0.0);
    for (double& share : within) {
        share /= whole;
    }
    return whole > 0.0 ? std::optional(std::move(within)) : std::nullopt;
}

}  // namespace sorvane
