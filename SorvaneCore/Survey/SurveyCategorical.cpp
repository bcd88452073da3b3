#include "SorvaneCore/Survey/SurveyCategorical.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "SorvaneCore/Dataset/LabelOrder.h"
#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/ParallelFor.h"
#include "SorvaneCore/Survey/SurveyVariance.h"
#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane::SurveyCategorical {

namespace {

namespace wording = SurveyWording;
using Numbers = std::vector<double>;
using Issues = std::vector<AnalysisReadinessIssue>;

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

/// The labels that occur in the rows, in the order in which people read them.
std::vector<std::string> labelsOf(const TextColumn& column, const std::vector<std::size_t>& rows) {
    std::set<std::string, std::less<>> distinct;
    for (const std::size_t row : rows) {
        distinct.emplace(column[row]);
    }
    const std::vector<std::string> labels(distinct.begin(), distinct.end());
    std::vector<std::string> ordered;
    for (const std::size_t index : LabelOrder::caseInsensitive(labels)) {
        ordered.push_back(labels[index]);
    }
    return ordered;
}

Table tableOf(const TextColumn& rows, const TextColumn& columns, const SurveyDesign& design) {
    Table table;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (!MissingValue::isMissing(rows[row]) && !MissingValue::isMissing(columns[row]) &&
            design.weights[row] > 0.0) {
            table.rows.push_back(row);
        }
    }
    table.rowLabels = labelsOf(rows, table.rows);
    table.columnLabels = labelsOf(columns, table.rows);
    std::map<std::string, std::size_t, std::less<>> rowAt;
    std::map<std::string, std::size_t, std::less<>> columnAt;
    for (std::size_t i = 0; i < table.rowLabels.size(); ++i) {
        rowAt[table.rowLabels[i]] = i;
    }
    for (std::size_t j = 0; j < table.columnLabels.size(); ++j) {
        columnAt[table.columnLabels[j]] = j;
    }
    for (const std::size_t row : table.rows) {
        table.cellOfRow.push_back(rowAt.find(rows[row])->second * table.columnLabels.size() +
                                  columnAt.find(columns[row])->second);
    }
    return table;
}

Numbers linearizedCovariance(const Table& table,
                             const Numbers& shares,
                             const SurveyDesign& design) {
    const std::size_t cells = table.cellCount();
    double sum = 0.0;
    for (const std::size_t row : table.rows) {
        sum += design.weights[row];
    }
    Numbers scores(design.weights.size() * cells, 0.0);
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        const std::size_t row = table.rows[i];
        for (std::size_t cell = 0; cell < cells; ++cell) {
            const double isThere = table.cellOfRow[i] == cell ? 1.0 : 0.0;
            scores[row * cells + cell] = design.weights[row] / sum * (isThere - shares[cell]);
        }
    }
    return SurveyVariance::scoreCovariance(scores, design, cells, table.rows);
}

struct Variation {
    Numbers covariance{};
    std::int64_t replicatesWithoutEstimates = 0;
};

/// Absent where no replicate gives weight to the table.
std::optional<Variation> variationOf(const Table& table,
                                     const Numbers& shares,
                                     const SurveyDesign& design) {
    if (!design.replicateWeights) {
        return Variation{.covariance = linearizedCovariance(table, shares, design)};
    }
    const ReplicateWeights& replicates = *design.replicateWeights;
    std::vector<std::optional<Numbers>> estimates(replicates.weights.size());
    parallelFor(estimates.size(), hardwareThreads(),
                [&](std::size_t r) { estimates[r] = table.shares(replicates.weights[r]); });
    auto covariance = SurveyVariance::replicateCovariance(estimates, replicates, shares);
    if (!covariance) {
        return std::nullopt;
    }
    return Variation{.covariance = std::move(*covariance),
                     .replicatesWithoutEstimates =
                         std::ranges::count(estimates, false, &std::optional<Numbers>::has_value)};
}

void addCells(SurveyCategoricalResult& result,
              const Table& table,
              const Numbers& shares,
              const Numbers& covariance) {
    const std::size_t columns = table.columnLabels.size();
    const double critical = MathDistributions::studentTCritical(
        1.0 - result.confidenceLevel, static_cast<double>(result.designDegreesOfFreedom));
    for (std::size_t cell = 0; cell < table.cellCount(); ++cell) {
        const std::size_t row = cell / columns;
        double rowShare = 0.0;
        for (std::size_t j = 0; j < columns; ++j) {
            rowShare += shares[row * columns + j];
        }
        SurveyCell each{.row = table.rowLabels[row],
                        .column = table.columnLabels[cell % columns],
                        .count = std::ranges::count(table.cellOfRow, cell),
                        .weightedCount = shares[cell] * result.sumOfWeights,
                        .proportion = shares[cell],
                        .rowProportion = shares[cell] / rowShare};
        each.standardError = std::sqrt(std::max(covariance[cell * table.cellCount() + cell], 0.0));
        each.lowerBound = std::max(each.proportion - critical * each.standardError, 0.0);
        each.upperBound = std::min(each.proportion + critical * each.standardError, 1.0);
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
    if (!(trace > 0.0) || !(traceOfSquare > 0.0)) {
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

/// What stands in the way of a test; else how much its errors leave out.
struct Filled {
    std::optional<std::string> obstacle{};
    std::int64_t replicatesWithoutEstimates = 0;
};

Filled fill(SurveyCategoricalResult& result, const Table& table, const SurveyDesign& design) {
    result.validN = static_cast<std::int64_t>(table.rows.size());
    result.rowLabels = table.rowLabels;
    result.columnLabels = table.columnLabels;
    for (const std::size_t row : table.rows) {
        result.sumOfWeights += design.weights[row];
    }
    if (table.rowLabels.size() < 2 || table.columnLabels.size() < 2) {
        return {.obstacle = wording::tooFewCategories(result.validN)};
    }
    result.designDegreesOfFreedom = design.designDegreesOfFreedom();
    const Numbers shares = *table.shares(design.weights);
    const std::optional<Variation> found = variationOf(table, shares, design);
    if (!found) {
        return {.obstacle = wording::noUsableReplicate()};
    }
    if (!std::ranges::all_of(found->covariance, [](double each) { return std::isfinite(each); })) {
        return {.obstacle = wording::beyondNumbers()};
    }
    addCells(result, table, shares, found->covariance);
    return {.obstacle = addTest(result, table, shares, found->covariance),
            .replicatesWithoutEstimates = found->replicatesWithoutEstimates};
}

Issues cautions(const SurveyCategoricalResult& result, const SurveyDesign& design) {
    constexpr std::int64_t fewDegreesOfFreedom = 15;
    constexpr std::int64_t fewCases = 5;
    Issues issues = design.readinessIssues();
    const auto cautionIf = [&issues](bool holds, std::string message) {
        if (holds) {
            issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
        }
    };
    const auto thin = std::ranges::count_if(
        result.cells, [](const SurveyCell& cell) { return cell.count < fewCases; });
    cautionIf(result.designDegreesOfFreedom < fewDegreesOfFreedom,
              wording::fewDegreesOfFreedom(result.designDegreesOfFreedom));
    cautionIf(thin > 0, wording::thinCells(thin));
    cautionIf(result.totalN > result.validN, wording::rowsDropped(result.totalN - result.validN));
    return issues;
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
    Issues issues;
    for (std::string& error : design.structuralErrors()) {
        issues.push_back(AnalysisReadinessIssue::blocked(std::move(error)));
    }
    for (const std::size_t length : {rows.size(), columns.size()}) {
        if (length != design.weights.size()) {
            issues.push_back(
                AnalysisReadinessIssue::blocked(wording::otherLength(length, result.totalN)));
        }
    }
    if (issues.empty()) {
        if (Filled filled = fill(result, tableOf(rows, columns, design), design); filled.obstacle) {
            issues.push_back(AnalysisReadinessIssue::blocked(std::move(*filled.obstacle)));
        } else {
            issues = cautions(result, design);
            if (filled.replicatesWithoutEstimates > 0) {
                issues.push_back(AnalysisReadinessIssue::caution(
                    wording::replicatesWithoutEstimates(filled.replicatesWithoutEstimates)));
            }
        }
    }
    result.readiness = AnalysisReadiness::of(std::string(wording::tableMinimumRequired),
                                             result.totalN, result.validN, std::move(issues));
    return result;
}

}  // namespace sorvane::SurveyCategorical
