#include "SorvaneCore/Analyses/AssumptionAudit/ModelResiduals.h"

#include <cmath>
#include <limits>
#include <string>

#include "SorvaneCore/Analyses/Basics/RegressionTests.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

namespace sorvane::ModelResiduals {

std::optional<std::vector<double>> of(std::span<const std::span<const double>> predictors,
                                      std::span<const double> outcome) {
    constexpr double rounding = 8.0 * std::numeric_limits<double>::epsilon();
    // Nobody reads the names.
    const RegressionOptions options{.predictorNames = std::vector<std::string>(predictors.size())};
    const auto fit = RegressionTests::ordinaryLeastSquares(predictors, outcome, options);
    if (!fit || fit->coefficients.size() != predictors.size() + 1) {
        return std::nullopt;
    }
    const double mean = SampleMoments::mean(outcome);
    std::vector<double> residuals(outcome.size());
    std::vector<double> sizes(outcome.size());
    for (std::size_t i = 0; i < outcome.size(); ++i) {
        residuals[i] = outcome[i] - mean;
        sizes[i] = std::abs(outcome[i]);
    }
    for (std::size_t j = 0; j < predictors.size(); ++j) {
        const double slope = fit->coefficients[j + 1].estimate;
        const double predictorMean = SampleMoments::mean(predictors[j]);
        for (std::size_t i = 0; i < outcome.size(); ++i) {
            residuals[i] -= slope * (predictors[j][i] - predictorMean);
            sizes[i] += std::abs(slope * predictors[j][i]);
        }
    }
    for (std::size_t i = 0; i < outcome.size(); ++i) {
        if (std::abs(residuals[i]) <= rounding * sizes[i]) {
            residuals[i] = 0.0;
        }
    }
    return residuals;
}

}  // namespace sorvane::ModelResiduals
