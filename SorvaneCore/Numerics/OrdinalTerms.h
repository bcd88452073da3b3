#pragma once

#include <cmath>

namespace sorvane {

/// What one answer on an ordered scale adds to a cumulative-logit likelihood: the probability that
/// a logistic variable lies between two cuts, and its derivatives.
///
/// The cuts lie at a threshold minus the linear predictor; those at either end are infinite.
struct OrdinalTerms {
    /// The logistic distribution at one cut: its density and the slope of that.
    struct Cut {
        double density = 0.0;
        double slope = 0.0;
    };

    double probability = 0.0;
    Cut lower{};
    Cut upper{};

    static OrdinalTerms between(double lower, double upper) {
        return {.probability = probabilityBetween(lower, upper),
                .lower = cutAt(lower),
                .upper = cutAt(upper)};
    }

    // The derivatives of the log probability in the cuts, and their negative second derivatives.
    double upperScore() const { return upper.density / probability; }
    double lowerScore() const { return -lower.density / probability; }
    double upperInformation() const {
        return upperScore() * upperScore() - upper.slope / probability;
    }
    double lowerInformation() const {
        return lowerScore() * lowerScore() + lower.slope / probability;
    }
    double crossInformation() const { return upperScore() * lowerScore(); }

    // The same in the linear predictor.
    double score() const { return -(upperScore() + lowerScore()); }
    double information() const {
        return upperInformation() + lowerInformation() + 2.0 * crossInformation();
    }

private:
    /// 1 / (1 + exp(x)), of which the upper tail is as precise as the lower.
    static double upperTail(double x) { return 1.0 / (1.0 + std::exp(x)); }

    static Cut cutAt(double x) {
        const double above = upperTail(x);
        const double below = upperTail(-x);
        return {.density = above * below, .slope = above * below * (above - below)};
    }

    /// By the tail in which it loses no digits.
    static double probabilityBetween(double lower, double upper) {
        return lower > 0.0 ? upperTail(lower) - upperTail(upper)
                           : upperTail(-upper) - upperTail(-lower);
    }
};

}  // namespace sorvane
