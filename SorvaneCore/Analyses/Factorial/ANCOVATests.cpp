#include "SorvaneCore/Analyses/Factorial/ANCOVATests.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/DesignCautions.h"
#include "SorvaneCore/Analyses/Basics/RowPartition.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/TallLeastSquares.h"

namespace sorvane::ANCOVATests {

namespace {

std::string droppedRows(std::int64_t count) {
    return NumberText::integer(count) +
           " row(s) were dropped because the outcome, group, or a covariate was missing.";
}

std::string lowErrorDF(std::int64_t errorDF) {
    return DesignCautions::lowErrorDF(errorDF) +
           "; standard errors and p-values are imprecise on a small sample.";
}

std::string thinGroups(std::int64_t smallest) {
    return DesignCautions::onlyCases("group", smallest) +
           " Adjusted means and the group F test are unstable with thin cells; treat this as "
           "exploratory.";
}

std::string notCausal() {
    return "Adjusting for covariates controls for the variables you measured, not for everything "
           "that differs between groups. ANCOVA is statistical control, not causal proof; an "
           "adjusted group difference does not establish that the group caused it.";
}

AnalysisReadiness readiness(const ANCOVAResult& result,
                            std::int64_t totalRows,
                            std::int64_t smallestGroup) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (totalRows > result.n) {
        caution(droppedRows(totalRows - result.n));
    }
    if (DesignCautions::isLowErrorDF(result.groupDFDenominator)) {
        caution(lowErrorDF(result.groupDFDenominator));
    }
    if (DesignCautions::isThin(smallestGroup)) {
        caution(thinGroups(smallestGroup));
    }
    caution(notCausal());
    return AnalysisReadiness::of(
        "two or more groups, a numeric outcome, at least one covariate, and more cases than model "
        "terms",
        totalRows, result.n, std::move(issues),
        static_cast<std::int64_t>(result.adjustedMeans.size()));
}

/// A column, group after group, as deviations from the means of the groups and from the grand mean.
struct GroupedColumn {
    std::vector<double> groupMeans{};
    double grandMean = 0.0;
    std::vector<double> aboutGroups{};
    std::vector<double> aboutGrand{};

    GroupedColumn(const RowPartition& partition, std::span<const double> values)
        : aboutGroups(partition.arranged(values)), aboutGrand(aboutGroups) {
        groupMeans = partition.means(aboutGroups);
        grandMean = SampleMoments::mean(aboutGrand);
        const double largest = SampleMoments::largestMagnitude(aboutGrand);
        for (double& value : aboutGrand) {
            value -= grandMean;
        }
        for (std::size_t i = 0; i < groupMeans.size(); ++i) {
            for (double& value : partition.group(std::span(aboutGroups), i)) {
                value -= groupMeans[i];
            }
        }
        SampleMoments::clearRounding(aboutGroups, largest);
        SampleMoments::clearRounding(aboutGrand, largest);
    }
};

struct Design {
    GroupedColumn outcome;
    std::vector<GroupedColumn> covariates{};
};

/// The model with groups: a level for each, and slopes within them.
struct FullModel {
    std::vector<double> slopes{};
    /// Of the slopes, but for the error variance.
    std::vector<double> variances{};
    double errorSquares = 0.0;
};

std::optional<FullModel> fullModel(const Design& design) {
    std::vector<std::span<const double>> columns;
    for (const GroupedColumn& covariate : design.covariates) {
        columns.emplace_back(covariate.aboutGroups);
    }
    const std::size_t size = columns.size();
    const auto reduction = TallLeastSquares::reduceColumns(columns, design.outcome.aboutGroups);
    if (!reduction) {
        return std::nullopt;
    }
    const auto slopes =
        LinearAlgebra::solveUpperTriangular(reduction->rFactor, size, reduction->qtb);
    const auto covariance = LinearAlgebra::covarianceFactorFromR(reduction->rFactor, size);
    if (!slopes || !covariance) {
        return std::nullopt;
    }
    FullModel model{.slopes = *slopes, .errorSquares = reduction->residualSumOfSquares};
    for (std::size_t j = 0; j < size; ++j) {
        model.variances.push_back((*covariance)[j * size + j]);
    }
    return model;
}

/// A share of the squares that is no more than rounding: such a model fits exactly.
constexpr double roundingShare = 1e-24;

/// The error squares of the model without groups.
std::optional<double> reducedErrorSquares(const Design& design) {
    std::vector<std::span<const double>> columns;
    for (const GroupedColumn& covariate : design.covariates) {
        columns.emplace_back(covariate.aboutGrand);
    }
    const auto reduction = TallLeastSquares::reduceColumns(columns, design.outcome.aboutGrand);
    return reduction ? std::optional(reduction->residualSumOfSquares) : std::nullopt;
}

/// The mean of a group, moved along the slopes to the grand means of the covariates.
double adjustedMean(const Design& design, const FullModel& model, std::size_t group) {
    double mean = design.outcome.groupMeans[group];
    for (std::size_t j = 0; j < model.slopes.size(); ++j) {
        const GroupedColumn& covariate = design.covariates[j];
        mean -= model.slopes[j] * (covariate.groupMeans[group] - covariate.grandMean);
    }
    return mean;
}

void setGroupEffect(ANCOVAResult& result, double groupSquares, double errorSquares) {
    const auto df1 = static_cast<double>(result.groupDFNumerator);
    const auto df2 = static_cast<double>(result.groupDFDenominator);
    result.meanSquareError = errorSquares / df2;
    result.groupF = groupSquares / df1 / result.meanSquareError;
    result.groupPValue = MathDistributions::fRightTailPValue(result.groupF, df1, df2);
    const double both = groupSquares + errorSquares;
    result.partialEtaSquared = both > 0.0 ? groupSquares / both : 0.0;
}

ANCOVACovariateEffect covariateEffect(std::string name,
                                      double coefficient,
                                      double squaredError,
                                      std::int64_t errorDF) {
    const double error = std::sqrt(squaredError);
    const double t = coefficient / error;
    return {.name = std::move(name),
            .coefficient = coefficient,
            .standardError = error,
            .t = t,
            .pValue = MathDistributions::studentTPValue(t, static_cast<double>(errorDF))};
}

bool isSound(const NumericColumn& outcome,
             const TextColumn& groups,
             std::span<const NumericColumn> covariates,
             const ANCOVAOptions& options) {
    const auto fits = [&outcome](const NumericColumn& column) {
        return column.size() == outcome.size();
    };
    return groups.size() == outcome.size() && std::ranges::all_of(covariates, fits) &&
           !covariates.empty() && covariates.size() == options.covariateNames.size();
}

/// The result of the complete rows, but for the readiness.
std::optional<ANCOVAResult> compared(const Design& design,
                                     const CategoryCodes& groups,
                                     const ANCOVAOptions& options) {
    const auto n = static_cast<std::int64_t>(groups.codes.size());
    const auto groupCount = static_cast<std::int64_t>(groups.labels.size());
    ANCOVAResult result{
        .groupFactorName = options.groupFactorName,
        .groupDFNumerator = groupCount - 1,
        .groupDFDenominator = n - groupCount - static_cast<std::int64_t>(design.covariates.size()),
        .n = n};
    const std::optional<FullModel> full = fullModel(design);
    const std::optional<double> reduced = reducedErrorSquares(design);
    if (!full || !reduced || !std::isfinite(full->errorSquares) ||
        full->errorSquares <= roundingShare * *reduced) {
        return std::nullopt;
    }
    setGroupEffect(result, std::max(*reduced - full->errorSquares, 0.0), full->errorSquares);
    const std::vector<std::int64_t> sizes = groups.counts();
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        result.adjustedMeans.push_back({.group = groups.labels[i],
                                        .n = sizes[i],
                                        .rawMean = design.outcome.groupMeans[i],
                                        .adjustedMean = adjustedMean(design, *full, i)});
    }
    for (std::size_t j = 0; j < full->slopes.size(); ++j) {
        result.covariateEffects.push_back(covariateEffect(
            options.covariateNames[j], full->slopes[j], result.meanSquareError * full->variances[j],
            result.groupDFDenominator));
    }
    return result;
}

}  // namespace

std::optional<ANCOVAResult> test(const NumericColumn& outcome,
                                 const TextColumn& groups,
                                 std::span<const NumericColumn> covariates,
                                 const ANCOVAOptions& options) {
    if (!isSound(outcome, groups, covariates, options)) {
        return std::nullopt;
    }
    std::vector<const NumericColumn*> numbers = {&outcome};
    for (const NumericColumn& covariate : covariates) {
        numbers.push_back(&covariate);
    }
    const std::array texts = {&groups};
    const std::vector<std::uint32_t> rows = CompleteCases::rows(numbers, texts);
    const CategoryCodes codes = CategoryCodes::of(groups, rows);
    if (codes.labels.size() < 2 || rows.size() <= codes.labels.size() + covariates.size()) {
        return std::nullopt;
    }
    const RowPartition partition(codes.codes, codes.labels.size());
    Design design{.outcome = {partition, CompleteCases::gathered(outcome, rows)}};
    for (const NumericColumn& covariate : covariates) {
        design.covariates.emplace_back(partition, CompleteCases::gathered(covariate, rows));
    }
    std::optional<ANCOVAResult> result = compared(design, codes, options);
    if (result) {
        result->readiness = readiness(*result, static_cast<std::int64_t>(outcome.size()),
                                      static_cast<std::int64_t>(partition.smallestGroup()));
    }
    return result;
}

}  // namespace sorvane::ANCOVATests
