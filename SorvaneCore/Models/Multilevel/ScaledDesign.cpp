#include "SorvaneCore/Models/Multilevel/ScaledDesign.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane {

namespace {

/// What is left of a column counts as rounding below this share of its length.
constexpr double roundingShare = 1e-12;

double norm(std::span<const double> values) {
    return std::sqrt(ColumnKernels::dot(values.data(), values.data(), values.size()));
}

}  // namespace

ScaledDesign::ScaledDesign(const MultilevelRows& rows)
    : rowCount_(rows.count()),
      fixedCount_(rows.fixedCount()),
      columns_((rows.fixedCount() + 1) * rows.count()),
      weights_(fixedCount_ * fixedCount_, 0.0),
      offsets_(fixedCount_, 0.0) {
    std::fill_n(columns_.begin(), rowCount_, 1.0);
    weights_[0] = 1.0;
    for (std::size_t j = 1; j < fixedCount_; ++j) {
        addPredictor(rows.predictors[j - 1], j);
    }
    addOutcome(rows.outcome);
}

void ScaledDesign::addPredictor(std::span<const double> values, std::size_t j) {
    const double mean = SampleMoments::mean(values);
    const std::span<double> column = std::span(columns_).subspan(j * rowCount_, rowCount_);
    std::ranges::transform(values, column.begin(), [mean](double v) { return v - mean; });
    const double length = norm(column);
    // A constant predictor becomes a column of zeros, which no profile accepts.
    const bool isConstant = !(length > roundingShare * norm(values));
    const double scale = isConstant ? 1.0 : length / std::sqrt(static_cast<double>(rowCount_));
    for (double& entry : column) {
        entry = isConstant ? 0.0 : entry / scale;
    }
    weights_[j * fixedCount_ + j] = 1.0 / scale;
    weights_[j] = -mean / scale;
    logDeterminantShift_ += 2.0 * std::log(scale);
}

void ScaledDesign::addOutcome(std::span<const double> values) {
    const std::size_t p = fixedCount_;
    const std::span<double> column = std::span(columns_).subspan(p * rowCount_, rowCount_);
    std::ranges::copy(values, column.begin());
    const std::span<const double> design = std::span(columns_).first(p * rowCount_);
    const auto inverse =
        LinearAlgebra::invert(LinearAlgebra::gramOfColumns(design, rowCount_, p), p);
    // The second round takes what rounding has left of the first.
    for (int round = 0; round < 2 && inverse; ++round) {
        std::vector<double> products(p);
        for (std::size_t j = 0; j < p; ++j) {
            products[j] = ColumnKernels::dot(&columns_[j * rowCount_], column.data(), rowCount_);
        }
        const std::vector<double> fit = LinearAlgebra::multiply(*inverse, p, p, products, 1);
        for (std::size_t j = 0; j < p; ++j) {
            ColumnKernels::subtractScaled(fit[j], &columns_[j * rowCount_], column.data(),
                                          rowCount_);
            offsets_[j] += fit[j];
        }
    }
    if (!(norm(column) > roundingShare * norm(values))) {
        std::ranges::fill(column, 0.0);
    }
}

std::span<const double> ScaledDesign::weights(std::size_t j) const {
    return std::span(weights_).subspan(j * fixedCount_, fixedCount_);
}

std::vector<double> ScaledDesign::unscaled(std::span<const double> scaled) const {
    return LinearAlgebra::multiply(weights_, fixedCount_, fixedCount_, scaled, 1);
}

std::vector<double> ScaledDesign::estimates(std::span<const double> scaled) const {
    std::vector<double> all(scaled.begin(), scaled.end());
    for (std::size_t j = 0; j < fixedCount_; ++j) {
        all[j] += offsets_[j];
    }
    return unscaled(all);
}

std::vector<double> ScaledDesign::variances(std::span<const double> scaledCovariance) const {
    std::vector<double> result(fixedCount_);
    for (std::size_t j = 0; j < fixedCount_; ++j) {
        result[j] = quadraticForm(scaledCovariance, weights(j));
    }
    return result;
}

double quadraticForm(std::span<const double> matrix, std::span<const double> v) {
    double sum = 0.0;
    for (std::size_t i = 0; i < v.size(); ++i) {
        for (std::size_t j = 0; j < v.size(); ++j) {
            sum += v[i] * matrix[i * v.size() + j] * v[j];
        }
    }
    return sum;
}

}  // namespace sorvane
