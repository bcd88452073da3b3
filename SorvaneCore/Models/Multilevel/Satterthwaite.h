#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/MultilevelProfile.h"

/// Degrees of freedom by the variability of the standard errors.
namespace sorvane::Satterthwaite {

/// The profile at parameters of the relative variances.
using ProfileAt =
    std::function<std::optional<MultilevelProfile>(std::span<const double> parameters)>;

struct Parameters {
    /// Of the relative variances, at the fit.
    std::vector<double> values{};
    /// Whether each may be negative.
    std::vector<bool> maySwitchSign{};
    /// The residual standard deviation at the fit.
    double sigma = 1.0;
};

/// The df of every fixed effect, at least 1; 1e6 where its variance does not vary.
///
/// Method     2 v^2 / (g'Ag), g the gradient of a coefficient's variance v in the parameters and
///            sigma, A twice the pseudoinverse of the Hessian of the deviance; both by differences
/// Failure    a setting next to the fit without profile -> absent
/// Cost       2 t^2 + 1 evaluations for t parameters
/// Reference  Kuznetsova, Brockhoff and Christensen (2017), lmerTest, section 2
std::optional<std::vector<double>> degrees(const Parameters& parameters,
                                           const ProfileAt& profileAt,
                                           const ScaledDesign& design,
                                           const MultilevelCriterion& criterion);

}  // namespace sorvane::Satterthwaite
