#include "SorvaneCore/Analyses/LatentVariables/FactorAnalyzer.h"

#include <algorithm>
#include <string>
#include <utility>

#include "SorvaneCore/Analyses/LatentVariables/LatentVariableSupport.h"
#include "SorvaneCore/Analyses/LatentVariables/PrincipalAxis.h"
#include "SorvaneCore/Analyses/LatentVariables/VarimaxRotation.h"

namespace sorvane::FactorAnalyzer {

namespace {

using LatentVariableSupport::Prepared;

constexpr double communalityTolerance = 1e-7;
/// Above 1 by more than the iteration leaves open.
constexpr double heywoodLimit = 1.0001;

std::string heywoodCase() {
    return "A Heywood case occurred: at least one item's communality reached or exceeded 1, "
           "implying zero or negative unique variance. The solution may be unstable; consider "
           "extracting fewer factors or a different method.";
}

AnalysisReadiness readiness(std::span<const NumericColumn> items,
                            const Prepared& prepared,
                            const std::vector<double>& communalities) {
    AnalysisReadiness general =
        LatentVariableSupport::readiness("Exploratory factor analysis", items, prepared);
    if (std::ranges::any_of(communalities, [](double each) { return each > heywoodLimit; })) {
        general.issues.push_back(AnalysisReadinessIssue::caution(heywoodCase()));
    }
    return AnalysisReadiness::of(std::move(general.minimumRequired), general.totalRows,
                                 general.validCases, std::move(general.issues));
}

void setVariance(FactorAnalysisResult& result) {
    result.varianceExplained.assign(static_cast<std::size_t>(result.factorCount), 0.0);
    for (const std::vector<double>& row : result.loadings) {
        for (std::size_t factor = 0; factor < row.size(); ++factor) {
            result.varianceExplained[factor] += row[factor] * row[factor];
        }
    }
    for (const double variance : result.varianceExplained) {
        result.proportionExplained.push_back(variance / static_cast<double>(result.itemCount));
    }
    for (const double communality : result.communalities) {
        result.uniquenesses.push_back(std::max(1.0 - communality, 0.0));
    }
}

}  // namespace

std::optional<FactorAnalysisResult> analyze(std::span<const NumericColumn> items,
                                            std::int64_t factorCount) {
    if (factorCount < 1 || static_cast<std::int64_t>(items.size()) - 1 < factorCount) {
        return std::nullopt;
    }
    const std::optional<Prepared> prepared = LatentVariableSupport::prepare(items);
    if (!prepared) {
        return std::nullopt;
    }
    std::optional<PrincipalAxis::Solution> solution =
        PrincipalAxis::extract(prepared->correlation, prepared->itemCount,
                               static_cast<std::size_t>(factorCount), communalityTolerance);
    if (!solution) {
        return std::nullopt;
    }
    FactorAnalysisResult result{.itemCount = static_cast<std::int64_t>(prepared->itemCount),
                                .casesUsed = static_cast<std::int64_t>(prepared->casesUsed),
                                .factorCount = factorCount,
                                .loadings = std::move(solution->loadings),
                                .communalities = std::move(solution->communalities),
                                .iterations = solution->iterations,
                                .converged = solution->converged};
    result.varimaxLoadings = varimaxRotation(result.loadings);
    setVariance(result);
    result.readiness = readiness(items, *prepared, result.communalities);
    return result;
}

}  // namespace sorvane::FactorAnalyzer
