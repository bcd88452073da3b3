#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Structural/ReticularModel.h"

namespace sorvane {

/// A sample's covariance in units in which every variable has a variance of 1.
struct SEMUnitSample {
    std::vector<double> standardDeviations{};
    std::vector<double> correlations{};
    double logDeterminant = 0.0;

    /// Failure    not positive definite, of which next to collinear is a case -> absent
    static std::optional<SEMUnitSample> of(std::span<const double> covariance, std::size_t p);
    /// In the units of the data.
    std::vector<double> covariance() const;
};

/// The coefficients of a model that agree best with a sample.
struct SEMEstimates {
    /// One per slot, in the units of the data.
    std::vector<double> coefficients{};
    /// Absent for fixed ones and where the information leaves none.
    std::vector<std::optional<double>> standardErrors{};
    /// Of all variables, in the units of the data; absent where it cannot be had, or where that of
    /// the observed ones is not positive definite.
    std::optional<std::vector<double>> covariance{};
    double discrepancy = std::numeric_limits<double>::quiet_NaN();
    bool converged = false;
    std::int64_t iterations = 0;
};

namespace SEMEstimation {

/// Where the search begins, one per free coefficient, for variables of the given covariance.
///
/// Method     loadings 0.7 sqrt(m) with m the mean variance, other paths and covariances 0,
///            variances of latent variables m / 2, others half of their variable's
std::vector<double> initialParameters(const SEMModel& model,
                                      const ReticularModel& form,
                                      std::span<const double> covariance);

/// Method     quasi-Newton in the units of the sample, from `initialParameters`. Where that does not
///            end in a minimum, as with indicators that are keyed against their factor, or in one
///            with a negative variance, once more with loadings of the signs that correlations with
///            the markers have, then in units in which factors have variances near 1 of those that
///            the first component of a factor's indicators has beside its marker, and of these
///            turned about for factors whose marker hardly hangs together with the others; without
///            a minimum then in the units of the data, from the `initialParameters` of its
///            covariance. A further search stands if it ends in a minimum, and lower. Errors by
///            the expected information
SEMEstimates estimate(const SEMModel& model,
                      const ReticularModel& form,
                      const SEMUnitSample& sample,
                      std::int64_t n);

/// Each coefficient with all variables at a variance of 1; absent where a variance is not positive.
///
/// Input      coefficients and covariances of all variables that belong together
std::vector<std::optional<double>> standardizedSolution(const ReticularModel& form,
                                                        std::span<const double> coefficients,
                                                        std::span<const double> covariance);

}  // namespace SEMEstimation

}  // namespace sorvane
