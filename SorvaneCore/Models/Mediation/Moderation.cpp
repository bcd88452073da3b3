#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Models/Mediation/MediationAnalysis.h"
#include "SorvaneCore/Models/Mediation/MediationRegression.h"
#include "SorvaneCore/Models/Mediation/MediationRows.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::MediationAnalysis {

namespace {

/// Where the coefficients stand.
constexpr std::size_t xPlace = 1;
constexpr std::size_t productPlace = 3;

std::string smallForAnInteraction() {
    return "Small sample for an interaction; power for moderation is low below about 50 cases.";
}

std::vector<double> products(const std::vector<double>& x, const std::vector<double>& w) {
    std::vector<double> result(x.size());
    std::ranges::transform(x, w, result.begin(), std::multiplies<>());
    return result;
}

std::optional<MediationRegression> fittedModel(const MediationRows& rows) {
    const std::vector<double> product = products(rows.x(), rows.middle());
    std::vector<const std::vector<double>*> columns = {&rows.x(), &rows.middle(), &product};
    const std::vector<const std::vector<double>*> covariates = rows.covariates();
    columns.insert(columns.end(), covariates.begin(), covariates.end());
    return MediationRegression::fit(columns, rows.outcome());
}

std::vector<std::string> labels(const ModerationNames& names) {
    std::vector<std::string> result = {"Intercept", names.x, names.moderator,
                                       names.x + " \u00d7 " + names.moderator};
    result.insert(result.end(), names.covariates.begin(), names.covariates.end());
    return result;
}

SimpleSlope slopeAt(const MediationRegression& fit, double level, std::string label) {
    const std::size_t width = fit.coefficients.size();
    const auto covariance = [&](std::size_t i, std::size_t j) {
        return fit.covariance[i * width + j];
    };
    const double variance = covariance(xPlace, xPlace) +
                            level * level * covariance(productPlace, productPlace) +
                            2.0 * level * covariance(xPlace, productPlace);
    SimpleSlope slope{.label = std::move(label),
                      .moderatorValue = level,
                      .slope = fit.coefficients[xPlace] + fit.coefficients[productPlace] * level,
                      .standardError = std::sqrt(std::max(variance, 0.0))};
    if (slope.standardError > 0.0) {
        slope.t = slope.slope / slope.standardError;
        slope.pValue = MathDistributions::studentTPValue(slope.t, fit.residualDegreesOfFreedom);
    }
    return slope;
}

std::vector<SimpleSlope> simpleSlopes(const MediationRegression& fit,
                                      const std::vector<double>& moderator,
                                      const std::string& name) {
    const double mean = SampleMoments::mean(moderator);
    const double deviation = std::sqrt(SampleMoments::sumOfSquares(moderator, mean) /
                                       static_cast<double>(moderator.size() - 1));
    return {slopeAt(fit, mean - deviation, name + " \u2212 1 SD"),
            slopeAt(fit, mean, name + " mean"), slopeAt(fit, mean + deviation, name + " + 1 SD")};
}

}  // namespace

std::optional<ModerationResult> moderation(const NumericColumn& x,
                                           const NumericColumn& moderator,
                                           const NumericColumn& outcome,
                                           std::span<const NumericColumn> covariates,
                                           const ModerationNames& names) {
    if (names.covariates.size() != covariates.size()) {
        return std::nullopt;
    }
    const std::optional<MediationRows> rows = MediationRows::of(x, moderator, outcome, covariates);
    if (!rows) {
        return std::nullopt;
    }
    const std::optional<MediationRegression> fit = fittedModel(*rows);
    if (!fit) {
        return std::nullopt;
    }
    ModerationResult result{.n = static_cast<std::int64_t>(rows->count())};
    for (const std::string& label : labels(names)) {
        result.coefficients.push_back(fit->path(result.coefficients.size(), label));
    }
    result.interaction = result.coefficients[productPlace];
    result.simpleSlopes = simpleSlopes(*fit, rows->middle(), names.moderator);
    result.rSquared = 1.0 - fit->residualSumOfSquares / fit->totalSumOfSquares;
    std::vector<AnalysisReadinessIssue> issues;
    if (result.n < fewCasesBelow) {
        issues.push_back(AnalysisReadinessIssue::caution(smallForAnInteraction()));
    }
    result.readiness = rows->readiness("W", std::move(issues));
    return result;
}

}  // namespace sorvane::MediationAnalysis
