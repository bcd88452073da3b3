#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Models/Mediation/IndirectEffectBootstrap.h"
#include "SorvaneCore/Models/Mediation/MediationAnalysis.h"
#include "SorvaneCore/Models/Mediation/MediationRegression.h"
#include "SorvaneCore/Models/Mediation/MediationRows.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::MediationAnalysis {

namespace {

constexpr std::int64_t fewestDrawn = 200;
constexpr std::size_t fewestKept = 100;
constexpr double smallestTotalEffect = 1e-12;
constexpr double significanceLevel = 0.05;

std::string smallForABootstrap() {
    return "Small sample for mediation; bootstrap intervals are wide and unstable below about 50 "
           "cases.";
}

std::string sobelDisagrees() {
    return "The Sobel test and the bootstrap interval disagree; report the bootstrap interval (the "
           "Sobel test assumes a normal sampling distribution the indirect effect rarely has).";
}

/// The models with their coefficients in the order intercept, (M,) X, covariates.
struct Models {
    MediationRegression mediator{};
    MediationRegression outcome{};
    MediationRegression total{};
};

std::optional<Models> fittedModels(const MediationRows& rows) {
    const std::vector<const std::vector<double>*> others = rows.covariates();
    std::vector<const std::vector<double>*> withX = {&rows.x()};
    withX.insert(withX.end(), others.begin(), others.end());
    std::vector<const std::vector<double>*> withBoth = {&rows.middle()};
    withBoth.insert(withBoth.end(), withX.begin(), withX.end());
    auto mediator = MediationRegression::fit(withX, rows.middle());
    auto outcome = MediationRegression::fit(withBoth, rows.outcome());
    auto total = MediationRegression::fit(withX, rows.outcome());
    if (!mediator || !outcome || !total) {
        return std::nullopt;
    }
    return Models{.mediator = std::move(*mediator),
                  .outcome = std::move(*outcome),
                  .total = std::move(*total)};
}

void setPaths(MediationResult& result, const Models& models) {
    result.a = models.mediator.path(1, "a");
    result.b = models.outcome.path(1, "b");
    result.cPrime = models.outcome.path(2, "c\u2032");
    result.cTotal = models.total.path(1, "c");
    result.indirect = result.a.estimate * result.b.estimate;
    const double error = std::hypot(result.b.estimate * result.a.standardError,
                                    result.a.estimate * result.b.standardError);
    if (error > 0.0) {
        result.sobelZ = result.indirect / error;
        result.sobelP = 2.0 * (1.0 - MathDistributions::standardNormalCDF(std::abs(result.sobelZ)));
    }
    if (std::abs(result.cTotal.estimate) > smallestTotalEffect) {
        result.proportionMediated = result.indirect / result.cTotal.estimate;
    }
}

/// Input      the kept estimates, ascending
void setInterval(MediationResult& result,
                 const std::vector<double>& estimates,
                 double confidenceLevel) {
    constexpr double smallestAlpha = 0.001;
    constexpr double largestAlpha = 0.999;
    const double alpha = 1.0 - confidenceLevel;
    const double tail = 0.5 * std::min(std::max(alpha, smallestAlpha), largestAlpha);
    const auto count = static_cast<double>(estimates.size());
    const auto at = [&](double index) {
        return estimates[static_cast<std::size_t>(std::clamp(index, 0.0, count - 1.0))];
    };
    result.bootLower = at(std::floor(tail * count));
    result.bootUpper = at(std::floor((1.0 - tail) * count) - 1.0);
    result.bootstrapSamples = static_cast<std::int64_t>(estimates.size());
}

std::vector<AnalysisReadinessIssue> cautions(const MediationResult& result) {
    std::vector<AnalysisReadinessIssue> issues;
    if (result.n < fewCasesBelow) {
        issues.push_back(AnalysisReadinessIssue::caution(smallForABootstrap()));
    }
    const bool excludesZero = result.bootLower > 0.0 || result.bootUpper < 0.0;
    if (excludesZero != (result.sobelP < significanceLevel)) {
        issues.push_back(AnalysisReadinessIssue::caution(sobelDisagrees()));
    }
    return issues;
}

}  // namespace

std::optional<MediationResult> simpleMediation(const NumericColumn& x,
                                               const NumericColumn& mediator,
                                               const NumericColumn& outcome,
                                               std::span<const NumericColumn> covariates,
                                               const MediationOptions& options) {
    const std::optional<MediationRows> rows = MediationRows::of(x, mediator, outcome, covariates);
    if (!rows) {
        return std::nullopt;
    }
    const std::optional<Models> models = fittedModels(*rows);
    if (!models) {
        return std::nullopt;
    }
    MediationResult result{.n = static_cast<std::int64_t>(rows->count())};
    setPaths(result, *models);
    const IndirectEffectBootstrap bootstrap(rows->covariates(), rows->x(), rows->middle(),
                                            rows->outcome());
    const std::int64_t drawn = std::max(options.bootstrapSamples, fewestDrawn);
    std::vector<double> estimates =
        bootstrap.estimates(static_cast<std::size_t>(drawn), options.seed);
    if (estimates.size() < fewestKept) {
        return std::nullopt;
    }
    std::ranges::sort(estimates);
    setInterval(result, estimates, options.confidenceLevel);
    result.readiness = rows->readiness("M", cautions(result));
    return result;
}

}  // namespace sorvane::MediationAnalysis
