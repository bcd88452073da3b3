#include "SorvaneCore/Analyses/GeneralizedRegression/OrdinalLikelihood.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace sorvane {

namespace {

/// The logistic distribution at one cut, which may be infinite: its density and the slope of that.
struct Cut {
    double density = 0.0;
    double slope = 0.0;
};

/// 1 / (1 + exp(x)), of which the upper tail is as precise as the lower.
double upperTail(double x) {
    return 1.0 / (1.0 + std::exp(x));
}

Cut cutAt(double x) {
    const double above = upperTail(x);
    const double below = upperTail(-x);
    return {.density = above * below, .slope = above * below * (above - below)};
}

/// P(lower < X <= upper), by the tail in which it loses no digits.
double between(double lower, double upper) {
    return lower > 0.0 ? upperTail(lower) - upperTail(upper)
                       : upperTail(-upper) - upperTail(-lower);
}

/// What a row adds to the derivatives, those with respect to its own cuts and to the predictors'
/// sum; the cuts lie at the threshold minus the sum.
struct RowTerms {
    double probability = 0.0;
    Cut lower{};
    Cut upper{};

    double upperScore() const { return upper.density / probability; }
    double lowerScore() const { return -lower.density / probability; }
    double upperInformation() const {
        return upperScore() * upperScore() - upper.slope / probability;
    }
    double lowerInformation() const {
        return lowerScore() * lowerScore() + lower.slope / probability;
    }
    double crossInformation() const { return upperScore() * lowerScore(); }
};

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

    void add(std::size_t level, const RowTerms& terms, const double* x) {
        sums_.objective += std::log(terms.probability);
        if (level < thresholds_) {
            addThreshold(level, terms.upperScore(), terms.upperInformation(), terms, x);
        }
        if (level > 0) {
            addThreshold(level - 1, terms.lowerScore(), terms.lowerInformation(), terms, x);
        }
        if (level > 0 && level < thresholds_) {
            row(level - 1)[level] += terms.crossInformation();
        }
        addScaled(-(terms.upperScore() + terms.lowerScore()), x, &sums_.gradient[thresholds_],
                  slopes_);
        const double information =
            terms.upperInformation() + terms.lowerInformation() + 2.0 * terms.crossInformation();
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

    void addThreshold(std::size_t threshold,
                      double score,
                      double information,
                      const RowTerms& terms,
                      const double* x) {
        sums_.gradient[threshold] += score;
        row(threshold)[threshold] += information;
        addScaled(-(information + terms.crossInformation()), x, row(threshold) + thresholds_,
                  slopes_);
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
        const RowTerms terms{
            .probability = between(lower, upper), .lower = cutAt(lower), .upper = cutAt(upper)};
        if (!(terms.probability > 0.0)) {
            return sums.impossible();
        }
        sums.add(level, terms, x);
    }
    return sums.finish();
}

}  // namespace sorvane
