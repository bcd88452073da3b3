#include "SorvaneCore/Models/Multilevel/LinkedDesign.h"

#include <cmath>
#include <utility>

#include "SorvaneCore/Models/Multilevel/ScaledDesign.h"
#include "SorvaneCore/Numerics/BlockedCholesky.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/IRLS.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane {

namespace {

/// Scaled fixed effects and their covariance without random effects.
struct PlainFit {
    std::vector<double> effects{};
    std::vector<double> covariance{};
};

/// Of the intercept alone; the covariance takes the same weight for all rows.
std::optional<PlainFit> interceptFit(const ScaledDesign& design,
                                     const MultilevelRows& rows,
                                     LinkedFamily family) {
    const std::size_t p = design.fixedCount();
    double mean = 0.0;
    for (const double value : rows.outcome) {
        mean += value / static_cast<double>(rows.count());
    }
    const bool isLogistic = family == LinkedFamily::logistic;
    const double weight = isLogistic ? mean * (1.0 - mean) : mean;
    auto inverse = LinearAlgebra::invert(
        LinearAlgebra::gramOfColumns(design.columns().first(p * rows.count()), rows.count(), p), p);
    if (!inverse) {
        return std::nullopt;
    }
    PlainFit fit{.effects = std::vector<double>(p, 0.0), .covariance = std::move(*inverse)};
    fit.effects[0] = std::log(isLogistic ? mean / (1.0 - mean) : mean);
    for (double& entry : fit.covariance) {
        entry /= weight;
    }
    return fit;
}

/// The fit without random effects where it has a finite end.
std::optional<PlainFit> plainFit(const ScaledDesign& design,
                                 const MultilevelRows& rows,
                                 LinkedFamily family) {
    const std::size_t p = design.fixedCount();
    std::vector<double> rowMajor(rows.count() * p);
    for (std::size_t j = 0; j < p; ++j) {
        for (std::size_t i = 0; i < rows.count(); ++i) {
            rowMajor[i * p + j] = design.columns()[j * rows.count() + i];
        }
    }
    OptimizerResult result = IRLS::fit(
        {.designMatrix = rowMajor, .rows = rows.count(), .cols = p, .response = rows.outcome},
        family == LinkedFamily::logistic ? IRLS::Link::logit : IRLS::Link::log, {});
    if (!result.converged) {
        return interceptFit(design, rows, family);
    }
    return PlainFit{.effects = std::move(result.parameters),
                    .covariance = std::move(result.inverseNegativeHessian)};
}

}  // namespace

std::optional<LinkedDesign> LinkedDesign::of(const MultilevelRows& rows, LinkedFamily family) {
    const ScaledDesign design(rows);
    const std::size_t p = design.fixedCount();
    const std::size_t n = rows.count();
    std::optional<PlainFit> fit = plainFit(design, rows, family);
    if (!fit || !BlockedCholesky::factor(fit->covariance, p)) {
        return std::nullopt;
    }
    LinkedDesign result;
    result.family_ = family;
    result.outcome_ = rows.outcome;
    for (const double outcome : rows.outcome) {
        const double peak = LinkedMass::peakOf(family, outcome);
        result.peaks_.push_back(peak);
        if (family == LinkedFamily::poisson) {
            result.constant_ += outcome * peak - outcome - std::lgamma(outcome + 1.0);
        }
    }
    result.origin_ = design.unscaled(fit->effects);
    result.columns_.assign(p * n, 0.0);
    result.basePredictor_.assign(n, 0.0);
    result.directions_.assign(p * p, 0.0);
    for (std::size_t j = 0; j < p; ++j) {
        const double* column = &design.columns()[j * n];
        ColumnKernels::subtractScaled(-fit->effects[j], column, result.basePredictor_.data(), n);
        std::vector<double> direction(p, 0.0);
        for (std::size_t i = j; i < p; ++i) {
            direction[i] = fit->covariance[i * p + j];
            ColumnKernels::subtractScaled(-direction[i], &design.columns()[i * n],
                                          &result.columns_[j * n], n);
        }
        const std::vector<double> unscaled = design.unscaled(direction);
        for (std::size_t i = 0; i < p; ++i) {
            result.directions_[i * p + j] = unscaled[i];
        }
    }
    return result;
}

std::vector<double> LinkedDesign::predictor(std::span<const double> coordinates) const {
    std::vector<double> result = basePredictor_;
    for (std::size_t j = 0; j < fixedCount(); ++j) {
        ColumnKernels::subtractScaled(-coordinates[j], &columns_[j * rowCount()], result.data(),
                                      rowCount());
    }
    return result;
}

std::vector<double> LinkedDesign::effects(std::span<const double> coordinates) const {
    std::vector<double> result =
        LinearAlgebra::multiply(directions_, fixedCount(), fixedCount(), coordinates, 1);
    for (std::size_t j = 0; j < fixedCount(); ++j) {
        result[j] += origin_[j];
    }
    return result;
}

std::vector<double> LinkedDesign::variances(std::span<const double> covariance) const {
    const std::size_t p = fixedCount();
    std::vector<double> result(p);
    for (std::size_t j = 0; j < p; ++j) {
        result[j] = quadraticForm(covariance, std::span(directions_).subspan(j * p, p));
    }
    return result;
}

}  // namespace sorvane
