#include "SorvaneCore/Analyses/GeneralizedRegression/StandardizedDesign.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/TallLeastSquares.h"

namespace sorvane {

namespace {

/// Writes a predictor into its column of the matrix, and its mean and deviation beside it.
void append(StandardizedDesign& design, const std::vector<double>& values) {
    const std::size_t j = design.means.size() + 1;
    const double mean = values.empty() ? 0.0 : SampleMoments::mean(values);
    double squares = 0.0;
    for (const double value : values) {
        squares += (value - mean) * (value - mean);
    }
    const double deviation = std::sqrt(squares / static_cast<double>(values.size()));
    const double scale = deviation > 0.0 ? deviation : 1.0;
    for (std::size_t row = 0; row < values.size(); ++row) {
        design.matrix[row * design.cols + j] = (values[row] - mean) / scale;
    }
    design.means.push_back(mean);
    design.deviations.push_back(scale);
}

/// The square root of g'Cg.
double errorAlong(std::span<const double> covariance, std::span<const double> gradient) {
    double variance = 0.0;
    for (std::size_t i = 0; i < gradient.size(); ++i) {
        for (std::size_t j = 0; j < gradient.size(); ++j) {
            variance += gradient[i] * covariance[i * gradient.size() + j] * gradient[j];
        }
    }
    return std::sqrt(std::max(variance, 0.0));
}

}  // namespace

bool StandardizedDesign::isFinite() const {
    const auto finite = [](double value) {
        return std::isfinite(value);
    };
    return std::ranges::all_of(means, finite) && std::ranges::all_of(deviations, finite);
}

std::optional<StandardizedDesign> StandardizedDesign::of(std::span<const NumericColumn> predictors,
                                                         const NumericColumn& outcome,
                                                         std::span<const std::string> names) {
    const auto fits = [&outcome](const NumericColumn& column) {
        return column.size() == outcome.size();
    };
    if (names.size() != predictors.size() || !std::ranges::all_of(predictors, fits)) {
        return std::nullopt;
    }
    std::vector<const NumericColumn*> columns = {&outcome};
    for (const NumericColumn& predictor : predictors) {
        columns.push_back(&predictor);
    }
    const std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    StandardizedDesign design{.outcome = CompleteCases::gathered(outcome, rows),
                              .totalRows = outcome.size(),
                              .cols = columns.size()};
    design.matrix.assign(rows.size() * design.cols, 1.0);
    for (const NumericColumn& predictor : predictors) {
        append(design, CompleteCases::gathered(predictor, rows));
    }
    design.hasFullRank =
        TallLeastSquares::reduceRows(design.matrix, design.rows(), design.cols, design.outcome)
            .has_value();
    return design;
}

EstimatesWithErrors StandardizedDesign::inOwnUnits(std::span<const double> parameters,
                                                   std::span<const double> covariance,
                                                   std::size_t leading,
                                                   double meanSign) const {
    EstimatesWithErrors result;
    for (std::size_t k = 0; k < parameters.size(); ++k) {
        // Of the estimate with respect to the parameters of the standardized predictors.
        std::vector<double> gradient(parameters.size(), 0.0);
        gradient[k] = 1.0;
        for (std::size_t j = 0; j < means.size(); ++j) {
            if (k < leading) {
                gradient[leading + j] = meanSign * means[j] / deviations[j];
            } else if (k == leading + j) {
                gradient[k] = 1.0 / deviations[j];
            }
        }
        double estimate = 0.0;
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            estimate += gradient[i] * parameters[i];
        }
        result.estimates.push_back(estimate);
        result.standardErrors.push_back(errorAlong(covariance, gradient));
    }
    return result;
}

}  // namespace sorvane
