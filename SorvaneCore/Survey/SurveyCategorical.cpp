#include "SorvaneCore/Survey/SurveyCategorical.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>
#include <utility>

#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Survey/SurveyReadiness.h"
#include "SorvaneCore/Survey/SurveyShares.h"
#include "SorvaneCore/Survey/SurveyVariance.h"
#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane::SurveyCategorical {

namespace {

namespace wording = SurveyWording;
using Numbers = std::vector<double>;
using Issues = std::vector<AnalysisReadinessIssue>;

/// Of a share; the rounding of the sums is no error.
double errorOf(double variance) {
    return variance > SurveyVariance::roundingOfSums ? std::sqrt(variance) : 0.0;
}

void addCells(SurveyCategoricalResult& result,
              const SurveyTable& table,
              const Numbers& shares,
              const SurveyShareVariances& variances) {
    const std::size_t columns = table.columnLabels.size();
    const std::vector<std::int64_t> counts = table.counts();
    const double critical = MathDistributions::studentTCritical(
        1.0 - result.confidenceLevel, static_cast<double>(result.designDegreesOfFreedom));
    for (std::size_t cell = 0; cell < table.cellCount(); ++cell) {
        const std::size_t row = cell / columns;
        SurveyCell each{
            .row = table.rowLabels[row],
            .column = table.columnLabels[cell % columns],
            .count = counts[cell],
            .weightedCount = shares[cell] * result.sumOfWeights,
            .proportion = shares[cell],
            .rowProportion = (*SurveyShares::withinRow(shares, row, columns))[cell % columns]};
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
std::optional<Numbers> designEffects(const SurveyTable& table,
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
                                   const SurveyTable& table,
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

bool hasRowErrors(const SurveyCategoricalResult& result, std::size_t row) {
    return !std::isnan(result.cells[row * result.columnLabels.size()].rowStandardError);
}

Issues cautions(const SurveyCategoricalResult& result,
                const SampledCounts& counts,
                const SurveyShareVariances& variances) {
    constexpr std::int64_t fewCases = 5;
    const std::int64_t passedByAll = variances.ofCells.replicatesWithoutEstimates;
    Issues issues = SurveyReadiness::cautions(counts, passedByAll);
    for (std::size_t row = 0; row < result.rowLabels.size(); ++row) {
        const std::int64_t passedBy = variances.replicatesWithoutRow[row];
        if (passedBy > passedByAll && hasRowErrors(result, row)) {
            issues.push_back(AnalysisReadinessIssue::caution(
                wording::replicatesWithoutRow(passedBy, result.rowLabels[row])));
        }
    }
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

void fill(SurveyCategoricalResult& result, const SurveyTable& table, const SampledDesign& sampled) {
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
    result.stratumCount = counts.strata;
    result.psuCount = counts.units;
    result.designDegreesOfFreedom = counts.degreesOfFreedom;
    const Numbers shares = *table.shares(design.weights);
    const auto variances = SurveyShareVariances::of(table, shares, sampled);
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
    result.readiness = readiness(result, cautions(result, counts, *variances));
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
        fill(result, SurveyTable::of(rows, columns), SampledDesign::of(design));
    }
    return result;
}

}  // namespace sorvane::SurveyCategorical
