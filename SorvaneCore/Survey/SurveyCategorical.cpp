#include "SorvaneCore/Survey/SurveyCategorical.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/ParallelFor.h"
#include "SorvaneCore/Survey/SurveyReadiness.h"
#include "SorvaneCore/Survey/SurveyVariance.h"
#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane::SurveyCategorical {

namespace {

namespace wording = SurveyWording;
using Numbers = std::vector<double>;
using Issues = std::vector<AnalysisReadinessIssue>;
using SurveyVariance::DesignCovariance;

/// The rows that hold both labels, each in its cell.
struct Table {
    std::vector<std::string> rowLabels{};
    std::vector<std::string> columnLabels{};
    std::vector<std::size_t> rows{};
    std::vector<std::size_t> cellOfRow{};

    std::size_t cellCount() const { return rowLabels.size() * columnLabels.size(); }

    /// The shares of the cells; absent where no row has weight.
    std::optional<Numbers> shares(std::span<const double> weights) const {
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
};

Table tableOf(const TextColumn& rows, const TextColumn& columns) {
    const std::vector<std::uint32_t> complete =
        CompleteCases::rows({}, std::array{&rows, &columns});
    CategoryCodes rowCodes = CategoryCodes::of(rows, complete);
    CategoryCodes columnCodes = CategoryCodes::of(columns, complete);
    rowCodes.sortByLabel();
    columnCodes.sortByLabel();
    Table table{.rows = {complete.begin(), complete.end()}};
    for (std::size_t i = 0; i < complete.size(); ++i) {
        table.cellOfRow.push_back(rowCodes.codes[i] * columnCodes.labels.size() +
                                  columnCodes.codes[i]);
    }
    table.rowLabels = std::move(rowCodes.labels);
    table.columnLabels = std::move(columnCodes.labels);
    return table;
}

Numbers linearizedCovariance(const Table& table,
                             const Numbers& shares,
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
std::vector<std::optional<Numbers>> replicateShares(const Table& table,
                                                    const ReplicateWeights& replicates) {
    std::vector<std::optional<Numbers>> estimates(replicates.weights.size());
    parallelFor(estimates.size(), hardwareThreads(),
                [&](std::size_t r) { estimates[r] = table.shares(replicates.weights[r]); });
    return estimates;
}

/// The shares of a row's cells among the row; absent where it has no weight.
std::optional<Numbers> withinRow(const Numbers& shares, std::size_t row, std::size_t columns) {
    const auto first = shares.begin() + static_cast<std::ptrdiff_t>(row * columns);
    Numbers within(first, first + static_cast<std::ptrdiff_t>(columns));
    const double whole = std::accumulate(within.begin(), within.end(), 0.0);
    for (double& share : within) {
        share /= whole;
    }
    return whole > 0.0 ? std::optional(std::move(within)) : std::nullopt;
}

/// The variances of the shares r within a row, by the covariance V of all shares: of dp_j - r_j dp,
/// over the squared share p of the row.
Numbers linearizedWithinRow(const Numbers& shares,
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

/// The variances of the shares within a row under the replicates; NaN where none gives it weight.
Numbers replicatedWithinRow(const Numbers& shares,
                            std::span<const std::optional<Numbers>> estimates,
                            const ReplicateWeights& replicates,
                            std::size_t row,
                            std::size_t columns) {
    std::vector<std::optional<Numbers>> within;
    for (const std::optional<Numbers>& each : estimates) {
        within.push_back(each ? withinRow(*each, row, columns) : std::nullopt);
    }
    const auto covariance =
        SurveyVariance::replicateCovariance(within, replicates, *withinRow(shares, row, columns));
    Numbers variances(columns, std::nan(""));
    for (std::size_t j = 0; covariance && j < columns; ++j) {
        variances[j] = covariance->values[j * columns + j];
    }
    return variances;
}

/// How the shares of the cells vary.
struct ShareVariances {
    /// Cells by cells.
    DesignCovariance ofCells{};
    /// One per cell, of its share of its row.
    Numbers withinRows{};

    /// Absent where no replicate has the shares.
    static std::optional<ShareVariances> of(const Table& table,
                                            const Numbers& shares,
                                            const SampledDesign& sampled);
};

std::optional<ShareVariances> ShareVariances::of(const Table& table,
                                                 const Numbers& shares,
                                                 const SampledDesign& sampled) {
    const auto& replicates = sampled.design.replicateWeights;
    const std::size_t columns = table.columnLabels.size();
    std::vector<std::optional<Numbers>> estimates;
    ShareVariances result;
    if (replicates) {
        estimates = replicateShares(table, *replicates);
        auto ofCells = SurveyVariance::replicateCovariance(estimates, *replicates, shares);
        if (!ofCells) {
            return std::nullopt;
        }
        result.ofCells = std::move(*ofCells);
    } else {
        result.ofCells.values = linearizedCovariance(table, shares, sampled);
    }
    for (std::size_t row = 0; row < table.rowLabels.size(); ++row) {
        const Numbers within =
            replicates ? replicatedWithinRow(shares, estimates, *replicates, row, columns)
                       : linearizedWithinRow(shares, result.ofCells.values, row, columns);
        result.withinRows.insert(result.withinRows.end(), within.begin(), within.end());
    }
    return result;
}

/// The counts of the cells.
std::vector<std::int64_t> countsOf(const Table& table) {
    std::vector<std::int64_t> counts(table.cellCount(), 0);
    for (const std::size_t cell : table.cellOfRow) {
        ++counts[cell];
    }
    return counts;
}

/// Of a share; the rounding of the sums is no error.
double errorOf(double variance) {
    return variance > SurveyVariance::roundingOfSums ? std::sqrt(variance) : 0.0;
}

void addCells(SurveyCategoricalResult& result,
              const Table& table,
              const Numbers& shares,
              const ShareVariances& variances) {
    const std::size_t columns = table.columnLabels.size();
    const std::vector<std::int64_t> counts = countsOf(table);
    const double critical = MathDistributions::studentTCritical(
        1.0 - result.confidenceLevel, static_cast<double>(result.designDegreesOfFreedom));
    for (std::size_t cell = 0; cell < table.cellCount(); ++cell) {
        const std::size_t row = cell / columns;
        SurveyCell each{.row = table.rowLabels[row],
                        .column = table.columnLabels[cell % columns],
                        .count = counts[cell],
                        .weightedCount = shares[cell] * result.sumOfWeights,
                        .proportion = shares[cell],
                        .rowProportion = (*withinRow(shares, row, columns))[cell % columns]};
        each.standardError = errorOf(variances.ofCells.values[cell * table.cellCount() + cell]);
        each.lowerBound = std::max(each.proportion - critical * each.standardError, 0.0);
        each.upperBound = std::min(each.proportion + critical * each.standardError, 1.0);
        const auto ofRow = counts.begin() + static_cast<std::ptrdiff_t>(row * columns);
        const bool isSingle =
            std::accumulate(ofRow, ofRow + std::ssize(table.columnLabels), std::int64_t{0}) < 2;
        if (!isSingle && !std::isnan(variances.withinRows[cell])) {
            each.rowStandardError = errorOf(variances.withinRows[cell]);
            each.rowLowerBound =
                std::max(each.rowProportion - critical * each.rowStandardError, 0.0);
            each.rowUpperBound =
                std::min(each.rowProportion + critical * each.rowStandardError, 1.0);
        }
        result.cells.push_back(std::move(each));
    }
}

/// Pearson's statistic of shares, per row of the sample.
double pearsonPerRow(const Numbers& shares, std::size_t rows, std::size_t columns) {
    double sum = 0.0;
    for (std::size_t i = 0; i < rows; ++i) {
        for (std::size_t j = 0; j < columns; ++j) {
            double ofRow = 0.0;
            double ofColumn = 0.0;
            for (std::size_t k = 0; k < columns; ++k) {
                ofRow += shares[i * columns + k];
            }
            for (std::size_t k = 0; k < rows; ++k) {
                ofColumn += shares[k * columns + j];
            }
            const double expected = ofRow * ofColumn;
            const double difference = shares[i * columns + j] - expected;
            sum += difference * difference / expected;
        }
    }
    return sum;
}

/// The contrasts of rows with columns, one row of cells each: with the last of both.
std::vector<Numbers> contrasts(std::size_t rows, std::size_t columns) {
    std::vector<Numbers> result;
    for (std::size_t i = 0; i + 1 < rows; ++i) {
        for (std::size_t j = 0; j + 1 < columns; ++j) {
            Numbers& contrast = result.emplace_back(rows * columns, 0.0);
            contrast[i * columns + j] = 1.0;
            contrast[i * columns + columns - 1] = -1.0;
            contrast[(rows - 1) * columns + j] = -1.0;
            contrast[rows * columns - 1] = 1.0;
        }
    }
    return result;
}

/// Generalized design effects: inv(C' P C / n) (C' P V P C), P the diagonal of inverse shares, 0
/// for empty cells. Absent where the first has no inverse.
std::optional<Numbers> designEffects(const Table& table,
                                     const Numbers& shares,
                                     const Numbers& covariance) {
    const std::size_t cells = shares.size();
    const auto n = static_cast<double>(table.rows.size());
    std::vector<Numbers> weighted = contrasts(table.rowLabels.size(), table.columnLabels.size());
    const std::vector<Numbers> plain = weighted;
    for (Numbers& contrast : weighted) {
        for (std::size_t cell = 0; cell < cells; ++cell) {
            contrast[cell] *= shares[cell] > 0.0 ? 1.0 / shares[cell] : 0.0;
        }
    }
    const std::size_t count = plain.size();
    Numbers simple(count * count, 0.0);
    Numbers complex(count * count, 0.0);
    for (std::size_t a = 0; a < count; ++a) {
        const Numbers turned = LinearAlgebra::multiply(covariance, cells, cells, weighted[a], 1);
        for (std::size_t b = 0; b < count; ++b) {
            for (std::size_t cell = 0; cell < cells; ++cell) {
                simple[a * count + b] += plain[b][cell] * weighted[a][cell];
                complex[a * count + b] += n * weighted[b][cell] * turned[cell];
            }
        }
    }
    const auto inverse = LinearAlgebra::invert(simple, count);
    return inverse ? std::optional(SurveyVariance::multiply(*inverse, complex, count))
                   : std::nullopt;
}

/// Fills in the test, or tells what stands in the way.
std::optional<std::string> addTest(SurveyCategoricalResult& result,
                                   const Table& table,
                                   const Numbers& shares,
                                   const Numbers& covariance) {
    const std::size_t rows = table.rowLabels.size();
    const std::size_t columns = table.columnLabels.size();
    const auto effects = designEffects(table, shares, covariance);
    if (!effects) {
        return wording::emptyContrasts();
    }
    const std::size_t count = (rows - 1) * (columns - 1);
    const Numbers squared = SurveyVariance::multiply(*effects, *effects, count);
    double trace = 0.0;
    double traceOfSquare = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        trace += (*effects)[i * count + i];
        traceOfSquare += squared[i * count + i];
    }
    // Cells that the design fixes leave rounding, against a mean of about 1 for each contrast.
    if (!(trace > SurveyVariance::roundingOfSums * static_cast<double>(table.rows.size())) ||
        !(traceOfSquare > 0.0)) {
        return wording::noDesignVariance();
    }
    const double perRow = pearsonPerRow(shares, rows, columns);
    result.chiSquare = perRow * static_cast<double>(table.rows.size());
    result.chiSquareDF = static_cast<double>(count);
    result.meanDesignEffect = trace / result.chiSquareDF;
    result.cramersV = std::sqrt(perRow / static_cast<double>(std::min(rows, columns) - 1));
    result.fStatistic = result.chiSquare / trace;
    result.dfNumerator = trace * trace / traceOfSquare;
    result.dfDenominator = result.dfNumerator * static_cast<double>(result.designDegreesOfFreedom);
    result.pValue = MathDistributions::fRightTailPValue(result.fStatistic, result.dfNumerator,
                                                        result.dfDenominator);
    return std::nullopt;
}

AnalysisReadiness readiness(const SurveyCategoricalResult& result, Issues issues) {
    return AnalysisReadiness::of(std::string(wording::tableMinimumRequired), result.totalN,
                                 result.validN, std::move(issues));
}

void block(SurveyCategoricalResult& result, std::string message) {
    result.readiness = readiness(result, {AnalysisReadinessIssue::blocked(std::move(message))});
}

/// A share of its row that could be another, without an error.
bool hasNoError(const SurveyCell& cell) {
    return cell.rowProportion > 0.0 && cell.rowProportion < 1.0 &&
           (cell.standardError == 0.0 || cell.rowStandardError == 0.0);
}

Issues cautions(const SurveyCategoricalResult& result,
                const SampledCounts& counts,
                std::int64_t replicatesWithoutEstimates) {
    constexpr std::int64_t fewCases = 5;
    Issues issues = SurveyReadiness::cautions(counts, replicatesWithoutEstimates);
    if (std::ranges::any_of(result.cells, hasNoError)) {
        issues.push_back(AnalysisReadinessIssue::caution(wording::zeroErrors()));
    }
    const auto thin = std::ranges::count_if(
        result.cells, [](const SurveyCell& cell) { return cell.count < fewCases; });
    if (thin > 0) {
        issues.push_back(AnalysisReadinessIssue::caution(wording::thinCells(thin)));
    }
    if (result.totalN > result.validN) {
        issues.push_back(
            AnalysisReadinessIssue::caution(wording::rowsDropped(result.totalN - result.validN)));
    }
    return issues;
}

void fill(SurveyCategoricalResult& result, const Table& table, const SampledDesign& sampled) {
    const SurveyDesign& design = sampled.design;
    result.validN = std::ssize(table.rows);
    result.rowLabels = table.rowLabels;
    result.columnLabels = table.columnLabels;
    result.sumOfWeights = design.sumOfWeights(table.rows);
    result.effectiveSampleSize = design.effectiveSampleSize(table.rows);
    if (table.rowLabels.size() < 2 || table.columnLabels.size() < 2) {
        block(result, wording::tooFewCategories(result.validN));
        return;
    }
    const SampledCounts counts = sampled.countsAmong(table.rows);
    result.designDegreesOfFreedom = counts.degreesOfFreedom;
    const Numbers shares = *table.shares(design.weights);
    const auto variances = ShareVariances::of(table, shares, sampled);
    if (!variances) {
        block(result, wording::noUsableReplicate());
        return;
    }
    const Numbers& covariance = variances->ofCells.values;
    if (!std::ranges::all_of(covariance, [](double each) { return std::isfinite(each); })) {
        block(result, wording::beyondNumbers());
        return;
    }
    addCells(result, table, shares, *variances);
    if (auto obstacle = addTest(result, table, shares, covariance)) {
        block(result, std::move(*obstacle));
        return;
    }
    result.readiness =
        readiness(result, cautions(result, counts, variances->ofCells.replicatesWithoutEstimates));
}

}  // namespace

SurveyCategoricalResult test(const TextColumn& rows,
                             const TextColumn& columns,
                             const SurveyDesign& design,
                             const std::string& rowName,
                             const std::string& columnName) {
    SurveyCategoricalResult result{.rowName = rowName,
                                   .columnName = columnName,
                                   .confidenceLevel = design.confidenceLevel,
                                   .varianceMethod = WeightedEstimators::varianceMethod(design),
                                   .totalN = design.observationCount()};
    const std::array lengths = {rows.size(), columns.size()};
    if (Issues issues = SurveyReadiness::obstacles(design, lengths); !issues.empty()) {
        result.readiness = readiness(result, std::move(issues));
    } else {
        fill(result, tableOf(rows, columns), SampledDesign::of(design));
    }
    return result;
}

}  // namespace sorvane::SurveyCategorical
