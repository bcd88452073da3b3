#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Models/Survival/CoxPartialLikelihood.h"
#include "SorvaneCore/Models/Survival/SurvivalAnalysis.h"
#include "SorvaneCore/Models/Survival/SurvivalRows.h"
#include "SorvaneCore/Models/Survival/SurvivalWording.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NormalCritical.h"

namespace sorvane::SurvivalAnalysis {

namespace {

using Evaluation = CoxPartialLikelihood::Evaluation;

constexpr double coefficientTolerance = 1e-8;
constexpr int mostTries = 8;
constexpr std::size_t fewestEvents = 2;
constexpr std::size_t fewEventsBelow = 10;

SurvivalRows usedRows(const NumericColumn& time,
                      const NumericColumn& event,
                      std::span<const NumericColumn> predictors) {
    std::vector<const NumericColumn*> columns = {&time, &event};
    for (const NumericColumn& predictor : predictors) {
        columns.push_back(&predictor);
    }
    return SurvivalRows::of(time, event, CompleteCases::rows(columns));
}

CoxPartialLikelihood likelihoodOf(const SurvivalRows& rows,
                                  std::span<const NumericColumn> predictors) {
    const std::size_t width = predictors.size();
    std::vector<double> cells(rows.count() * width);
    for (std::size_t j = 0; j < width; ++j) {
        const std::vector<double> values = CompleteCases::gathered(predictors[j], rows.rows);
        for (std::size_t i = 0; i < values.size(); ++i) {
            cells[i * width + j] = values[i];
        }
    }
    return {rows.times, rows.hasEvent, std::move(cells)};
}

double largestEntry(const std::vector<double>& step) {
    double largest = 0.0;
    for (const double entry : step) {
        largest = std::max(largest, std::abs(entry));
    }
    return largest;
}

/// Whether the likelihood does not fall. The slack grows with it, as its rounding does; otherwise that
/// would refuse the last steps of an ordinary fit.
bool isNoLess(double now, double before) {
    constexpr double slack = 1e-12;
    return std::isfinite(now) && now >= before - slack * std::max(1.0, std::abs(before));
}

/// Where the iteration stands, in standard units.
struct State {
    std::vector<double> beta{};
    Evaluation now{};
    /// Of the information; absent where it is singular.
    std::optional<std::vector<double>> covariance{};
};

/// Goes along a step, or a half, a quarter of it, as far as the likelihood does not fall and the
/// information can still be inverted, which it cannot where an effect has no bound; the share gone,
/// 0 for none.
double advance(State& state,
               const CoxPartialLikelihood& likelihood,
               const std::vector<double>& step) {
    double factor = 1.0;
    for (int tried = 0; tried < mostTries; ++tried, factor *= 0.5) {
        std::vector<double> beta = state.beta;
        for (std::size_t j = 0; j < beta.size(); ++j) {
            beta[j] += factor * step[j];
        }
        Evaluation next = likelihood.at(beta);
        if (!isNoLess(next.logLikelihood, state.now.logLikelihood)) {
            continue;
        }
        if (auto covariance = LinearAlgebra::invert(next.information, beta.size())) {
            state = {.beta = std::move(beta),
                     .now = std::move(next),
                     .covariance = std::move(covariance)};
            return factor;
        }
    }
    return 0.0;
}

/// The inverse of the information without effects; absent where predictors are collinear. That is
/// tested in the mean of the events, as their sum, which is rounded the more the larger it is, would
/// hide it.
std::optional<std::vector<double>> covarianceAtStart(std::vector<double> information,
                                                     std::size_t p,
                                                     std::int64_t events) {
    const auto count = static_cast<double>(events);
    for (double& entry : information) {
        entry /= count;
    }
    auto covariance = LinearAlgebra::invert(information, p);
    if (covariance) {
        for (double& entry : *covariance) {
            entry /= count;
        }
    }
    return covariance;
}

/// Newton's iteration; `covariance` is absent where the information is singular from the start.
State iterated(const CoxPartialLikelihood& likelihood,
               std::int64_t maxIterations,
               CoxResult& result) {
    const std::size_t p = likelihood.predictorCount();
    State state{.beta = std::vector<double>(p, 0.0)};
    state.now = likelihood.at(state.beta);
    result.nullLogLikelihood = state.now.logLikelihood;
    state.covariance = covarianceAtStart(state.now.information, p, result.events);
    while (state.covariance && !result.converged && result.iterations < maxIterations) {
        ++result.iterations;
        const std::vector<double> step =
            LinearAlgebra::multiply(*state.covariance, p, p, state.now.score, 1);
        const double factor = advance(state, likelihood, step);
        if (factor == 0.0) {
            break;
        }
        result.converged = factor * largestEntry(step) < coefficientTolerance;
    }
    return state;
}

void setCoefficients(CoxResult& result,
                     const State& state,
                     std::span<const double> units,
                     const CoxOptions& options) {
    constexpr double smallestAlpha = 0.001;
    constexpr double largestAlpha = 0.999;
    const double alpha = std::clamp(1.0 - options.confidenceLevel, smallestAlpha, largestAlpha);
    const double critical = normalCritical(alpha, NormalCriticalSetting::narrow);
    const std::size_t p = state.beta.size();
    for (std::size_t j = 0; j < p; ++j) {
        const double estimate = state.beta[j] / units[j];
        const double error = std::sqrt((*state.covariance)[j * p + j]) / units[j];
        const double z = estimate / error;
        result.coefficients.push_back(
            {.name = options.predictorNames[j],
             .estimate = estimate,
             .standardError = error,
             .hazardRatio = std::exp(estimate),
             .z = z,
             .pValue = 2.0 * (1.0 - MathDistributions::standardNormalCDF(std::abs(z))),
             .lowerHR = std::exp(estimate - critical * error),
             .upperHR = std::exp(estimate + critical * error)});
    }
}

AnalysisReadiness readinessOf(const SurvivalRows& rows,
                              std::size_t totalRows,
                              std::vector<AnalysisReadinessIssue> issues) {
    return AnalysisReadiness::of("n > predictors and \u22652 events; event coded 0/1",
                                 static_cast<std::int64_t>(totalRows),
                                 static_cast<std::int64_t>(rows.count()), std::move(issues));
}

void block(CoxResult& result, const SurvivalRows& rows, std::size_t totalRows, std::string why) {
    result.logLikelihood = std::numeric_limits<double>::quiet_NaN();
    result.nullLogLikelihood = result.logLikelihood;
    result.converged = false;
    result.readiness =
        readinessOf(rows, totalRows, {AnalysisReadinessIssue::blocked(std::move(why))});
}

std::vector<AnalysisReadinessIssue> cautions(const CoxResult& result, const SurvivalRows& rows) {
    std::vector<AnalysisReadinessIssue> issues;
    if (!result.converged) {
        issues.push_back(AnalysisReadinessIssue::caution(SurvivalWording::notConverged()));
    }
    if (rows.eventCount() < fewEventsBelow) {
        issues.push_back(AnalysisReadinessIssue::caution(SurvivalWording::fewEvents()));
    }
    SurvivalWording::addTimeAndCensoringChecks(issues, rows);
    return issues;
}

bool haveOneLength(const NumericColumn& time, std::span<const NumericColumn> others) {
    return std::ranges::all_of(
        others, [&time](const NumericColumn& other) { return other.size() == time.size(); });
}

}  // namespace

std::optional<CoxResult> coxPH(const NumericColumn& time,
                               const NumericColumn& event,
                               std::span<const NumericColumn> predictors,
                               const CoxOptions& options) {
    if (event.size() != time.size() || !haveOneLength(time, predictors) ||
        options.predictorNames.size() != predictors.size()) {
        return std::nullopt;
    }
    const SurvivalRows rows = usedRows(time, event, predictors);
    CoxResult result{.n = static_cast<std::int64_t>(rows.count()),
                     .events = static_cast<std::int64_t>(rows.eventCount())};
    if (predictors.empty() || rows.count() <= predictors.size() ||
        rows.eventCount() < fewestEvents) {
        block(result, rows, time.size(), SurvivalWording::tooFewForCox());
        return result;
    }
    const CoxPartialLikelihood likelihood = likelihoodOf(rows, predictors);
    const State state = iterated(likelihood, options.maxIterations, result);
    if (!state.covariance) {
        block(result, rows, time.size(), SurvivalWording::singularInformation());
        return result;
    }
    result.logLikelihood = state.now.logLikelihood;
    setCoefficients(result, state, likelihood.units(), options);
    result.readiness = readinessOf(rows, time.size(), cautions(result, rows));
    return result;
}

}  // namespace sorvane::SurvivalAnalysis
