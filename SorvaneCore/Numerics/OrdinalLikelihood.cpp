#include "SorvaneCore/Numerics/OrdinalLikelihood.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

#include "SorvaneCore/Numerics/OrdinalTerms.h"

namespace sorvane {

namespace {

/// Adds `factor` times a row's predictors to a list.
void addScaled(double factor, const double* x, double* to, std::size_t count) {
    for (std::size_t j = 0; j < count; ++j) {
        to[j] += factor * x[j];
    }
}

/// The sums over rows, of the information its upper triangle.
class Sums {
public:
    Sums(std::size_t thresholds, std::size_t slopes)
        : thresholds_(thresholds), slopes_(slopes), size_(thresholds + slopes) {
        sums_.gradient.assign(size_, 0.0);
        sums_.negativeHessian.assign(size_ * size_, 0.0);
    }

    /// Adds `weight` times a row.
    void add(double weight, std::size_t level, const OrdinalTerms& terms, const double* x) {
        sums_.objective += weight * std::log(terms.probability);
        const double cross = weight * terms.crossInformation();
        if (level < thresholds_) {
            addThreshold(level, weight * terms.upperScore(), weight * terms.upperInformation(),
                         cross, x);
        }
        if (level > 0) {
            addThreshold(level - 1, weight * terms.lowerScore(), weight * terms.lowerInformation(),
                         cross, x);
        }
        if (level > 0 && level < thresholds_) {
            row(level - 1)[level] += cross;
        }
        addScaled(weight * terms.score(), x, &sums_.gradient[thresholds_], slopes_);
        const double information = weight * terms.information();
        for (std::size_t i = 0; i < slopes_; ++i) {
            addScaled(information * x[i], x + i, row(thresholds_ + i) + thresholds_ + i,
                      slopes_ - i);
        }
    }

    IRLS::Evaluation finish() {
        for (std::size_t i = 0; i < size_; ++i) {
            for (std::size_t j = i + 1; j < size_; ++j) {
                row(j)[i] = row(i)[j];
            }
        }
        return std::move(sums_);
    }

    IRLS::Evaluation impossible() {
        sums_.objective = -std::numeric_limits<double>::infinity();
        return std::move(sums_);
    }

private:
    double* row(std::size_t i) { return &sums_.negativeHessian[i * size_]; }

    void addThreshold(
        std::size_t threshold, double score, double information, double cross, const double* x) {
        sums_.gradient[threshold] += score;
        row(threshold)[threshold] += information;
        addScaled(-(information + cross), x, row(threshold) + thresholds_, slopes_);
    }

    std::size_t thresholds_;
    std::size_t slopes_;
    std::size_t size_;
    IRLS::Evaluation sums_;
};

}  // namespace

IRLS::Evaluation OrdinalLikelihood::at(std::span<const double> parameters) const {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::size_t slopes = stride_ - 1;
    Sums sums(thresholds_, slopes);
    for (std::size_t row = 0; row < levels_.size(); ++row) {
        const double* x = matrix_.data() + row * stride_ + 1;
        const double sum = std::inner_product(x, x + slopes, parameters.begin() + thresholds_, 0.0);
        const std::size_t level = levels_[row];
        const double lower = level > 0 ? parameters[level - 1] - sum : -infinity;
        const double upper = level < thresholds_ ? parameters[level] - sum : infinity;
        const OrdinalTerms terms = OrdinalTerms::between(lower, upper);
        if (!(terms.probability > 0.0)) {
            return sums.impossible();
        }
        sums.add(weights_.empty() ? 1.0 : weights_[row], level, terms, x);
    }
    return sums.finish();
}

}  // namespace sorvane
