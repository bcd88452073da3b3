#include "SorvaneCore/Survey/SurveyModelFrame.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/TallLeastSquares.h"

namespace sorvane {

namespace {

using Numbers = std::vector<double>;

bool isUsable(std::optional<double> value) {
    return value && std::isfinite(*value);
}

/// The standard deviation by weights of mean 1.
double weightedDeviation(const Numbers& values, const Numbers& weights) {
    const auto n = static_cast<double>(values.size());
    double mean = 0.0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        mean += weights[i] * values[i] / n;
    }
    double squares = 0.0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double deviation = values[i] - mean;
        squares += weights[i] * deviation * deviation;
    }
    return std::sqrt(squares / n);
}

/// Makes the values of predictor j the column after it, in standard deviations from their mean;
/// the standard deviation.
double addStandardized(SurveyModelFrame& frame,
                       std::size_t j,
                       Numbers values,
                       const Numbers& weights) {
    const double mean = SampleMoments::mean(values);
    const double squares = SampleMoments::sumOfSquares(values, mean);
    const double found = std::sqrt(squares / static_cast<double>(values.size()));
    const double deviation = found > 0.0 ? found : 1.0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = (values[i] - mean) / deviation;
        frame.matrix[i * frame.cols + j + 1] = values[i];
    }
    frame.means.push_back(mean);
    frame.populationDeviations.push_back(deviation * weightedDeviation(values, weights));
    return deviation;
}

/// The part of R that is of the slopes, for columns of standard deviation 1.
Numbers triangleOfSlopes(const TallLeastSquares::Reduction& reduction) {
    const std::size_t slopes = reduction.cols - 1;
    const double root = std::sqrt(static_cast<double>(reduction.rows));
    Numbers triangle(slopes * slopes);
    for (std::size_t i = 0; i < slopes; ++i) {
        for (std::size_t j = 0; j < slopes; ++j) {
            triangle[i * slopes + j] = reduction.rFactor[(i + 1) * reduction.cols + j + 1] / root;
        }
    }
    return triangle;
}

/// Turns the standardized columns X into X inv(R).
void takeApart(SurveyModelFrame& frame, const Numbers& triangle) {
    const std::size_t slopes = frame.slopes();
    for (std::size_t i = 0; i < frame.rows(); ++i) {
        double* row = &frame.matrix[i * frame.cols + 1];
        for (std::size_t k = 0; k < slopes; ++k) {
            for (std::size_t j = 0; j < k; ++j) {
                row[k] -= triangle[j * slopes + k] * row[j];
            }
            row[k] /= triangle[k * slopes + k];
        }
    }
}

/// inv(D) inv(R) of the predictors' standard deviations D; absent where R has no inverse.
std::optional<Numbers> unitsOfSlopes(const Numbers& triangle, const Numbers& deviations) {
    const std::size_t slopes = deviations.size();
    Numbers units(slopes * slopes);
    for (std::size_t k = 0; k < slopes; ++k) {
        Numbers unit(slopes, 0.0);
        unit[k] = 1.0;
        const auto column = LinearAlgebra::solveUpperTriangular(triangle, slopes, unit);
        if (!column) {
            return std::nullopt;
        }
        for (std::size_t j = 0; j < slopes; ++j) {
            units[j * slopes + k] = (*column)[j] / deviations[j];
        }
    }
    return units;
}

void takeRows(SurveyModelFrame& frame,
              const NumericColumn& outcome,
              std::span<const NumericColumn> predictors) {
    for (std::size_t row = 0; row < outcome.size(); ++row) {
        const auto hasValue = [row](const NumericColumn& column) {
            return isUsable(column[row]);
        };
        if (hasValue(outcome) && std::ranges::all_of(predictors, hasValue) &&
            frame.design.weights[row] > 0.0) {
            frame.activeRows.push_back(row);
            frame.outcome.push_back(*outcome[row]);
        }
    }
}

}  // namespace

std::vector<double> SurveyModelFrame::scaledWeights(std::span<const double> ofDesign) const {
    Numbers result;
    double sum = 0.0;
    for (const std::size_t row : activeRows) {
        result.push_back(ofDesign[row]);
        sum += ofDesign[row];
    }
    for (double& weight : result) {
        weight *= static_cast<double>(result.size()) / sum;
    }
    return result;
}

SurveyModelFrame SurveyModelFrame::of(const NumericColumn& outcome,
                                      std::span<const NumericColumn> predictors,
                                      const SurveyDesign& design) {
    SurveyModelFrame frame{.design = design, .cols = predictors.size() + 1};
    takeRows(frame, outcome, predictors);
    const std::size_t n = frame.rows();
    frame.matrix.assign(n * frame.cols, 1.0);
    const Numbers weights = frame.scaledWeights(design.weights);
    Numbers deviations;
    for (std::size_t j = 0; j < predictors.size() && n > 0; ++j) {
        Numbers values;
        for (const std::size_t row : frame.activeRows) {
            values.push_back(*predictors[j][row]);
        }
        deviations.push_back(addStandardized(frame, j, std::move(values), weights));
    }
    const auto reduced = TallLeastSquares::reduceRows(frame.matrix, n, frame.cols, frame.outcome);
    if (!reduced) {
        return frame;
    }
    const Numbers triangle = triangleOfSlopes(*reduced);
    if (auto units = unitsOfSlopes(triangle, deviations)) {
        takeApart(frame, triangle);
        frame.slopeUnits = std::move(*units);
        frame.hasFullRank = true;
    }
    return frame;
}

}  // namespace sorvane
