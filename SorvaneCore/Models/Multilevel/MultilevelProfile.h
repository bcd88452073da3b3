#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/MultilevelSettings.h"
#include "SorvaneCore/Models/Multilevel/ScaledDesign.h"

namespace sorvane {

/// What one setting of the relative variances gives, with the fixed effects and the residual
/// variance at their best.
struct MultilevelProfile {
    /// On the scale of the design, as is the next.
    std::vector<double> beta{};
    /// X'V^-1 X, p by p.
    std::vector<double> xtwx{};
    double residualSquares = 0.0;
    double sigma2 = 0.0;
    double sumLogDetV = 0.0;
    /// On the scale of the model.
    double logDetXtWX = 0.0;
    double criterion = 0.0;
};

/// The criteria of a model of n rows and p fixed effects.
struct MultilevelCriterion {
    MultilevelEstimator estimator = MultilevelEstimator::reml;
    std::size_t n = 0;
    std::size_t p = 0;

    /// By what the residual squares are divided.
    double degrees() const;
    double logLikelihood(const MultilevelProfile& profile) const;
    /// -2 times the log likelihood, but for a constant, at another residual variance.
    double deviance(const MultilevelProfile& profile, double sigma2) const;
};

/// The profile that the products of fixed effects and outcome under V^-1 give.
///
/// Input      products, width by width, of which the upper triangle is read and the rest written
/// Failure    collinear fixed effects (a pivot of 1e-12 of its diagonal or less), no residual
///            variance, none left under `reml` -> absent
std::optional<MultilevelProfile> profileOf(std::vector<double> products,
                                           double sumLogDetV,
                                           const ScaledDesign& design,
                                           const MultilevelCriterion& criterion);

}  // namespace sorvane
