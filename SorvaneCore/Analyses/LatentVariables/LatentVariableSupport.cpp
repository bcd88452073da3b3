#include "SorvaneCore/Analyses/LatentVariables/LatentVariableSupport.h"

#include <cmath>
#include <string>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::LatentVariableSupport {

namespace {

constexpr std::size_t fewestItems = 2;
constexpr std::size_t fewestCases = 3;
constexpr std::int64_t stableCases = 100;
constexpr std::int64_t casesPerItem = 5;

std::string tooFewItems(std::string_view method) {
    return std::string(method) + " needs at least two item columns.";
}

std::string tooFewCases() {
    return "Fewer than three complete cases are available.";
}

std::string unstable() {
    return "Cases used is below 100; latent-variable estimates are unstable at this sample size.";
}

std::string fewCasesPerItem() {
    return "Fewer than five cases per item; results are descriptive only.";
}

bool haveOneLength(std::span<const NumericColumn> items) {
    for (const NumericColumn& item : items) {
        if (item.size() != items.front().size()) {
            return false;
        }
    }
    return true;
}

std::vector<std::uint32_t> completeRows(std::span<const NumericColumn> items) {
    std::vector<const NumericColumn*> pointers;
    for (const NumericColumn& item : items) {
        pointers.push_back(&item);
    }
    return CompleteCases::rows(pointers);
}

/// Writes the z scores of some values; false where these have no spread, or more than a number can hold.
bool standardize(std::span<const double> values, double* scores) {
    const double mean = SampleMoments::mean(values);
    const double deviation = std::sqrt(SampleMoments::sumOfSquares(values, mean) /
                                       static_cast<double>(values.size() - 1));
    if (!(deviation > 0.0) || !std::isfinite(deviation)) {
        return false;
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
        scores[i] = (values[i] - mean) / deviation;
    }
    return true;
}

std::vector<double> correlationOf(const Prepared& prepared) {
    const std::size_t k = prepared.itemCount;
    std::vector<double> correlation =
        LinearAlgebra::gramOfColumns(prepared.standardized, prepared.casesUsed, k);
    for (double& entry : correlation) {
        entry /= static_cast<double>(prepared.casesUsed - 1);
    }
    for (std::size_t j = 0; j < k; ++j) {
        correlation[j * k + j] = 1.0;
    }
    return correlation;
}

}  // namespace

std::optional<Prepared> prepare(std::span<const NumericColumn> items) {
    if (items.size() < fewestItems || items.front().size() == 0 || !haveOneLength(items)) {
        return std::nullopt;
    }
    const std::vector<std::uint32_t> rows = completeRows(items);
    if (rows.size() < fewestCases) {
        return std::nullopt;
    }
    Prepared prepared{.itemCount = items.size(),
                      .casesUsed = rows.size(),
                      .standardized = std::vector<double>(items.size() * rows.size())};
    for (std::size_t j = 0; j < items.size(); ++j) {
        if (!standardize(CompleteCases::gathered(items[j], rows),
                         &prepared.standardized[j * rows.size()])) {
            return std::nullopt;
        }
    }
    prepared.correlation = correlationOf(prepared);
    return prepared;
}

AnalysisReadiness readiness(std::string_view method,
                            std::int64_t itemCount,
                            std::int64_t totalRows,
                            std::int64_t casesUsed) {
    std::vector<AnalysisReadinessIssue> issues;
    if (itemCount < static_cast<std::int64_t>(fewestItems)) {
        issues.push_back(AnalysisReadinessIssue::blocked(tooFewItems(method)));
    }
    if (casesUsed < static_cast<std::int64_t>(fewestCases)) {
        issues.push_back(AnalysisReadinessIssue::blocked(tooFewCases()));
    } else if (casesUsed < stableCases) {
        issues.push_back(AnalysisReadinessIssue::caution(unstable()));
    }
    if (casesUsed < casesPerItem * itemCount) {
        issues.push_back(AnalysisReadinessIssue::caution(fewCasesPerItem()));
    }
    return AnalysisReadiness::of("at least two items and at least three complete cases", totalRows,
                                 casesUsed, std::move(issues));
}

AnalysisReadiness readiness(std::string_view method,
                            std::span<const NumericColumn> items,
                            const Prepared& prepared) {
    return readiness(method, static_cast<std::int64_t>(items.size()),
                     static_cast<std::int64_t>(items.front().size()),
                     static_cast<std::int64_t>(prepared.casesUsed));
}

}  // namespace sorvane::LatentVariableSupport
