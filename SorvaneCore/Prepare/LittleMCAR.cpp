#include <algorithm>
#include <limits>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Prepare/MissingDataAnalysis.h"
#include "SorvaneCore/Prepare/MissingPatterns.h"

namespace sorvane::MissingDataAnalysis {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

const char* const minimumRequired = "At least two missing-data patterns and df > 0";
const char* const singularPattern =
    "A missing-data pattern produced a singular covariance (collinear or constant variables). "
    "Little's MCAR test cannot be computed.";
const char* const noFreedom =
    "Degrees of freedom are not positive (too few missing-data patterns relative to variables). "
    "Little's MCAR test does not apply.";
const char* const onePattern =
    "Only one missing-data pattern is present, so there is nothing to compare. The test is "
    "trivially non-significant.";

/// One list per variable, a value per row: the deviation from the variable's mean, 0 where the
/// value is missing, so that it adds nothing to a sum.
using Deviations = std::vector<std::vector<double>>;

std::vector<double> deviationsOf(const NumericColumn& column, std::size_t rows) {
    const std::vector<double> present = column.present();
    const double mean = present.empty() ? 0.0 : SampleMoments::mean(present);
    std::vector<double> ofLevel;
    for (const std::optional<double>& value : column.levels()) {
        ofLevel.push_back(value ? *value - mean : 0.0);
    }
    std::vector<double> result(rows, 0.0);
    column.withCodes([&](const auto& codes) {
        for (std::size_t row = 0; row < column.size(); ++row) {
            result[row] = ofLevel[codes[row]];
        }
    });
    return result;
}

/// How many rows have both values, by pair of variables.
std::vector<double> pairCounts(const MissingPatterns& patterns, std::size_t variables) {
    std::vector<double> counts(variables * variables, 0.0);
    for (std::size_t pattern = 0; pattern < patterns.counts.size(); ++pattern) {
        const std::vector<bool>& present = patterns.present[pattern];
        for (std::size_t i = 0; i < variables; ++i) {
            for (std::size_t j = 0; present[i] && j < variables; ++j) {
                counts[i * variables + j] +=
                    present[j] ? static_cast<double>(patterns.counts[pattern]) : 0.0;
            }
        }
    }
    return counts;
}

/// The sums of products of deviations, over blocks of rows that stay in the cache.
std::vector<double> productSums(const Deviations& deviations, std::size_t rows) {
    constexpr std::size_t blockRows = 1024;
    const std::size_t p = deviations.size();
    std::vector<double> sums(p * p, 0.0);
    for (std::size_t first = 0; first < rows; first += blockRows) {
        const std::size_t length = std::min(blockRows, rows - first);
        for (std::size_t i = 0; i < p; ++i) {
            for (std::size_t j = 0; j <= i; ++j) {
                sums[i * p + j] += ColumnKernels::dot(deviations[i].data() + first,
                                                      deviations[j].data() + first, length);
            }
        }
    }
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            sums[j * p + i] = sums[i * p + j];
        }
    }
    return sums;
}

std::vector<double> covariances(const Deviations& deviations, const MissingPatterns& patterns) {
    const std::vector<double> counts = pairCounts(patterns, deviations.size());
    std::vector<double> matrix = productSums(deviations, patterns.patternOfRow.size());
    for (std::size_t i = 0; i < matrix.size(); ++i) {
        matrix[i] = counts[i] > 0.0 ? matrix[i] / counts[i] : 0.0;
    }
    return matrix;
}

/// The difference of each pattern's means from the means of all rows, pattern by pattern; 0 for a
/// variable that the pattern lacks.
///
/// The mean of all deviations is subtracted in its turn: it is 0 but for rounding, and so a single
/// pattern differs from the whole by nothing at all.
std::vector<double> meanDifferences(const Deviations& deviations, const MissingPatterns& patterns) {
    const std::size_t p = deviations.size();
    std::vector<double> differences(patterns.counts.size() * p, 0.0);
    std::vector<double> sums(patterns.counts.size());
    for (std::size_t j = 0; j < p; ++j) {
        std::ranges::fill(sums, 0.0);
        double all = 0.0;
        for (std::size_t row = 0; row < deviations[j].size(); ++row) {
            sums[patterns.patternOfRow[row]] += deviations[j][row];
            all += deviations[j][row];
        }
        double rows = 0.0;
        for (std::size_t pattern = 0; pattern < sums.size(); ++pattern) {
            rows +=
                patterns.present[pattern][j] ? static_cast<double>(patterns.counts[pattern]) : 0.0;
        }
        for (std::size_t pattern = 0; pattern < sums.size(); ++pattern) {
            if (patterns.present[pattern][j]) {
                differences[pattern * p + j] =
                    sums[pattern] / static_cast<double>(patterns.counts[pattern]) - all / rows;
            }
        }
    }
    return differences;
}

std::vector<std::size_t> presentVariables(const std::vector<bool>& present) {
    std::vector<std::size_t> variables;
    for (std::size_t j = 0; j < present.size(); ++j) {
        if (present[j]) {
            variables.push_back(j);
        }
    }
    return variables;
}

/// d' S^-1 d over the variables given; absent where S is singular.
std::optional<double> distance(std::span<const double> differences,
                               const std::vector<double>& covariance,
                               const std::vector<std::size_t>& variables) {
    std::vector<double> part;
    for (const std::size_t i : variables) {
        for (const std::size_t j : variables) {
            part.push_back(covariance[i * differences.size() + j]);
        }
    }
    const auto inverse = LinearAlgebra::invert(part, variables.size());
    if (!inverse) {
        return std::nullopt;
    }
    double sum = 0.0;
    for (std::size_t a = 0; a < variables.size(); ++a) {
        for (std::size_t b = 0; b < variables.size(); ++b) {
            sum += differences[variables[a]] * (*inverse)[a * variables.size() + b] *
                   differences[variables[b]];
        }
    }
    return sum;
}

std::vector<AnalysisReadinessIssue> issues(const LittleMCARResult& result, bool isSingular) {
    std::vector<AnalysisReadinessIssue> found;
    if (isSingular) {
        found.push_back(AnalysisReadinessIssue::blocked(singularPattern));
    }
    if (result.degreesOfFreedom < 1) {
        found.push_back(AnalysisReadinessIssue::blocked(noFreedom));
    } else if (result.patternCount < 2 && !isSingular) {
        found.push_back(AnalysisReadinessIssue::caution(onePattern));
    }
    return found;
}

}  // namespace

std::optional<LittleMCARResult> littleMCAR(std::span<const NumericColumn> columns,
                                           std::span<const std::string> /*variableNames*/) {
    const MissingPatterns patterns = MissingPatterns::of(columns);
    const std::size_t rows = patterns.patternOfRow.size();
    if (columns.empty() || rows == 0) {
        return std::nullopt;
    }
    Deviations deviations;
    for (const NumericColumn& column : columns) {
        deviations.push_back(deviationsOf(column, rows));
    }
    const std::vector<double> covariance = covariances(deviations, patterns);
    const std::vector<double> differences = meanDifferences(deviations, patterns);
    const std::size_t p = columns.size();
    LittleMCARResult result{.degreesOfFreedom = -static_cast<std::int64_t>(p),
                            .patternCount = static_cast<std::int64_t>(patterns.counts.size())};
    std::int64_t usableRows = 0;
    bool isSingular = false;
    for (std::size_t pattern = 0; pattern < patterns.counts.size(); ++pattern) {
        const std::vector<std::size_t> variables = presentVariables(patterns.present[pattern]);
        if (variables.empty()) {
            continue;
        }
        const std::optional<double> each =
            distance({&differences[pattern * p], p}, covariance, variables);
        // Covariances of available cases need not be those of any data; a distance below 0 tells.
        isSingular = isSingular || !each || *each < 0.0;
        result.statistic +=
            each ? static_cast<double>(patterns.counts[pattern]) * *each : notANumber;
        result.degreesOfFreedom += static_cast<std::int64_t>(variables.size());
        usableRows += patterns.counts[pattern];
    }
    result.readiness = AnalysisReadiness::of(minimumRequired, static_cast<std::int64_t>(rows),
                                             usableRows, issues(result, isSingular));
    result.pValue = result.degreesOfFreedom < 1 || isSingular
                        ? notANumber
                        : MathDistributions::chiSquareRightTailPValue(
                              result.statistic, static_cast<double>(result.degreesOfFreedom));
    result.degreesOfFreedom = std::max<std::int64_t>(result.degreesOfFreedom, 0);
    return result;
}

}  // namespace sorvane::MissingDataAnalysis
