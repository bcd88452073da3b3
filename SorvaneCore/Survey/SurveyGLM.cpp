#include "SorvaneCore/Survey/SurveyGLM.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/CanonicalLikelihood.h"
#include "SorvaneCore/Numerics/IRLS.h"
#include "SorvaneCore/Survey/SurveyModels.h"
#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane::SurveyGLM {

namespace {

using Numbers = std::vector<double>;

/// One row at a linear predictor, of a likelihood with its canonical link.
struct RowTerms {
    double logLikelihood = 0.0;
    double mean = 0.0;
    double variance = 0.0;

    static RowTerms of(SurveyModelKind kind, double y, double eta) {
        if (kind == SurveyModelKind::poisson) {
            const double rate = std::exp(eta);
            return {.logLikelihood = y * eta - rate, .mean = rate, .variance = rate};
        }
        const double odds = std::exp(-std::abs(eta));
        const double far = odds / (1.0 + odds);
        return {.logLikelihood = y * eta - std::max(eta, 0.0) - std::log1p(odds),
                .mean = eta > 0.0 ? 1.0 - far : far,
                .variance = far / (1.0 + odds)};
    }
};

double linearPredictor(const SurveyModelFrame& frame,
                       std::size_t i,
                       std::span<const double> parameters) {
    double sum = 0.0;
    for (std::size_t j = 0; j < frame.cols; ++j) {
        sum += frame.row(i)[j] * parameters[j];
    }
    return sum;
}

IRLS::Evaluation evaluate(const SurveyModelFrame& frame,
                          SurveyModelKind kind,
                          std::span<const double> weights,
                          std::span<const double> parameters) {
    const std::size_t p = frame.cols;
    IRLS::Evaluation sums{.gradient = Numbers(p, 0.0), .negativeHessian = Numbers(p * p, 0.0)};
    for (std::size_t i = 0; i < frame.rows(); ++i) {
        const std::span<const double> x = frame.row(i);
        const RowTerms terms =
            RowTerms::of(kind, frame.outcome[i], linearPredictor(frame, i, parameters));
        sums.objective += weights[i] * terms.logLikelihood;
        const double score = weights[i] * (frame.outcome[i] - terms.mean);
        const double information = weights[i] * terms.variance;
        for (std::size_t j = 0; j < p; ++j) {
            sums.gradient[j] += score * x[j];
            for (std::size_t k = 0; k <= j; ++k) {
                sums.negativeHessian[j * p + k] += information * x[j] * x[k];
            }
        }
    }
    for (std::size_t j = 0; j < p; ++j) {
        for (std::size_t k = 0; k < j; ++k) {
            sums.negativeHessian[k * p + j] = sums.negativeHessian[j * p + k];
        }
    }
    return sums;
}

/// The linear predictor farthest from 0; for rates the lowest, as a distance.
double farthest(const SurveyModelFrame& frame,
                SurveyModelKind kind,
                std::span<const double> parameters) {
    double distance = 0.0;
    for (std::size_t i = 0; i < frame.rows(); ++i) {
        const double eta = linearPredictor(frame, i, parameters);
        distance = std::max(distance, kind == SurveyModelKind::poisson ? -eta : std::abs(eta));
    }
    return distance;
}

/// Whether the likelihood grows without end along the step. How much a row weighs makes no
/// difference, but those without weight have no say.
bool growsForever(const SurveyModelFrame& frame,
                  SurveyModelKind kind,
                  std::span<const double> weights,
                  std::span<const double> step) {
    Numbers matrix;
    Numbers outcome;
    for (std::size_t i = 0; i < frame.rows(); ++i) {
        if (weights[i] > 0.0) {
            const std::span<const double> row = frame.row(i);
            matrix.insert(matrix.end(), row.begin(), row.end());
            outcome.push_back(frame.outcome[i]);
        }
    }
    const IRLS::Observations weighed{
        .designMatrix = matrix, .rows = outcome.size(), .cols = frame.cols, .response = outcome};
    const IRLS::Link link = kind == SurveyModelKind::poisson ? IRLS::Link::log : IRLS::Link::logit;
    return IRLS::CanonicalLikelihood(weighed, link).growsForever(step);
}

std::optional<SurveyModelEstimates> estimates(const SurveyModelFrame& frame,
                                              SurveyModelKind kind,
                                              std::span<const double> weights) {
    // How far a linear predictor must be from 0 before a fit can be suspected of running away.
    constexpr double suspiciousDistance = 15.0;
    double mean = 0.0;
    for (std::size_t i = 0; i < frame.rows(); ++i) {
        mean += weights[i] * frame.outcome[i] / static_cast<double>(frame.rows());
    }
    Numbers start(frame.cols, 0.0);
    start[0] = kind == SurveyModelKind::poisson ? std::log(mean) : std::log(mean / (1.0 - mean));
    Numbers last = start;
    const OptimizerResult end = IRLS::dampedNewton(
        start, {.maxIterations = 60, .tolerance = 1e-10},
        [&](std::span<const double> at) {
            last.assign(at.begin(), at.end());
            return evaluate(frame, kind, weights, at);
        },
        [&](std::span<const double> step) {
            return farthest(frame, kind, last) > suspiciousDistance &&
                   growsForever(frame, kind, weights, step);
        });
    if (!end.converged) {
        return std::nullopt;
    }
    return SurveyModelEstimates{.parameters = end.parameters,
                                .bread = end.inverseNegativeHessian,
                                .iterations = end.iterations};
}

bool isCoded(SurveyModelKind kind, double y) {
    return kind == SurveyModelKind::logistic ? y == 0.0 || y == 1.0
                                             : y >= 0.0 && y == std::floor(y);
}

std::optional<SurveyModelResult> fit(SurveyModelKind kind,
                                     const NumericColumn& outcome,
                                     std::span<const NumericColumn> predictors,
                                     const SurveyDesign& design,
                                     const SurveyModelOptions& options) {
    auto result = SurveyModels::start(kind, outcome, predictors, design, options);
    if (!result || SurveyModels::isBlocked(*result)) {
        return result;
    }
    const SurveyModelFrame frame = SurveyModelFrame::of(outcome, predictors, design);
    if (!std::ranges::all_of(frame.outcome, [kind](double y) { return isCoded(kind, y); })) {
        return std::nullopt;
    }
    if (!SurveyModels::passes(*result, frame, frame.cols)) {
        return result;
    }
    const auto [least, most] = std::ranges::minmax(frame.outcome);
    if (kind == SurveyModelKind::logistic ? least == most : most == 0.0) {
        SurveyModels::block(*result, SurveyWording::constantOutcome(kind));
        return result;
    }
    if (kind == SurveyModelKind::logistic) {
        result->events = std::ranges::count(frame.outcome, 1.0);
    }
    SurveyModels::finish(
        *result, frame,
        {.kind = kind,
         .fit = [&](std::span<const double> weights) { return estimates(frame, kind, weights); },
         .scores =
             [&](std::size_t i, std::span<const double> parameters, std::span<double> scores) {
                 const RowTerms terms =
                     RowTerms::of(kind, frame.outcome[i], linearPredictor(frame, i, parameters));
                 for (std::size_t j = 0; j < frame.cols; ++j) {
                     scores[j] = (frame.outcome[i] - terms.mean) * frame.row(i)[j];
                 }
             }},
        options);
    return result;
}

}  // namespace

std::optional<SurveyModelResult> fitLogistic(const NumericColumn& outcome,
                                             std::span<const NumericColumn> predictors,
                                             const SurveyDesign& design,
                                             const SurveyModelOptions& options) {
    return fit(SurveyModelKind::logistic, outcome, predictors, design, options);
}

std::optional<SurveyModelResult> fitPoisson(const NumericColumn& outcome,
                                            std::span<const NumericColumn> predictors,
                                            const SurveyDesign& design,
                                            const SurveyModelOptions& options) {
    return fit(SurveyModelKind::poisson, outcome, predictors, design, options);
}

}  // namespace sorvane::SurveyGLM
