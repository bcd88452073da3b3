#include "SorvaneCore/Models/Multilevel/MultilevelProfile.h"

#include <cmath>
#include <numbers>

namespace sorvane {

namespace {

constexpr double singularShare = 1e-12;

/// The Cholesky factor of the first p rows and columns in the lower triangle, the last row carried
/// along; the last diagonal entry becomes what is left of it.
bool factor(std::vector<double>& matrix, std::size_t width) {
    for (std::size_t j = 0; j < width; ++j) {
        const double* rowJ = &matrix[j * width];
        double pivot = matrix[j * width + j];
        const double diagonal = pivot;
        for (std::size_t k = 0; k < j; ++k) {
            pivot -= rowJ[k] * rowJ[k];
        }
        if (j + 1 == width) {
            matrix[j * width + j] = pivot;
            break;
        }
        if (!(pivot > singularShare * diagonal) || !std::isfinite(pivot)) {
            return false;
        }
        const double root = std::sqrt(pivot);
        matrix[j * width + j] = root;
        for (std::size_t i = j + 1; i < width; ++i) {
            double sum = matrix[i * width + j];
            for (std::size_t k = 0; k < j; ++k) {
                sum -= matrix[i * width + k] * rowJ[k];
            }
            matrix[i * width + j] = sum / root;
        }
    }
    return true;
}

}  // namespace

double MultilevelCriterion::degrees() const {
    const auto all = static_cast<double>(n);
    return estimator == MultilevelEstimator::ml ? all : all - static_cast<double>(p);
}

double MultilevelCriterion::logLikelihood(const MultilevelProfile& profile) const {
    // 1 + ln 2 pi.
    constexpr double constant = 2.8378770664093453;
    const double restricted = estimator == MultilevelEstimator::reml ? profile.logDetXtWX : 0.0;
    return -0.5 *
           (degrees() * (constant + std::log(profile.sigma2)) + profile.sumLogDetV + restricted);
}

double MultilevelCriterion::deviance(const MultilevelProfile& profile, double sigma2) const {
    const double restricted = estimator == MultilevelEstimator::reml ? profile.logDetXtWX : 0.0;
    return degrees() * std::log(2.0 * std::numbers::pi * sigma2) + profile.sumLogDetV + restricted +
           profile.residualSquares / sigma2;
}

std::optional<MultilevelProfile> profileOf(std::vector<double> products,
                                           double sumLogDetV,
                                           const ScaledDesign& design,
                                           const MultilevelCriterion& criterion) {
    const std::size_t width = design.width();
    const std::size_t p = width - 1;
    for (std::size_t i = 0; i < width; ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            products[i * width + j] = products[j * width + i];
        }
    }
    MultilevelProfile result{.sumLogDetV = sumLogDetV, .logDetXtWX = design.logDeterminantShift()};
    result.xtwx.reserve(p * p);
    for (std::size_t i = 0; i < p; ++i) {
        const auto row = products.begin() + static_cast<std::ptrdiff_t>(i * width);
        result.xtwx.insert(result.xtwx.end(), row, row + static_cast<std::ptrdiff_t>(p));
    }
    if (!factor(products, width) || criterion.degrees() < 1.0) {
        return std::nullopt;
    }
    result.beta.assign(products.begin() + static_cast<std::ptrdiff_t>(p * width),
                       products.begin() + static_cast<std::ptrdiff_t>(p * width + p));
    for (std::size_t j = p; j-- > 0;) {
        for (std::size_t i = j + 1; i < p; ++i) {
            result.beta[j] -= products[i * width + j] * result.beta[i];
        }
        result.beta[j] /= products[j * width + j];
        result.logDetXtWX += 2.0 * std::log(products[j * width + j]);
    }
    result.residualSquares = products[p * width + p];
    result.sigma2 = result.residualSquares / criterion.degrees();
    if (!(result.sigma2 > 0.0) || !std::isfinite(std::log(result.sigma2))) {
        return std::nullopt;
    }
    result.criterion = sumLogDetV + criterion.degrees() * std::log(result.sigma2) +
                       (criterion.estimator == MultilevelEstimator::reml ? result.logDetXtWX : 0.0);
    return result;
}

}  // namespace sorvane
