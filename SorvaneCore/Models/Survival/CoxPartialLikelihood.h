#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sorvane {

/// The log partial likelihood of proportional hazards with ties after Breslow, over the effects of
/// predictors in standard units, whatever their offsets and spreads.
class CoxPartialLikelihood {
public:
    /// What one sweep over the cases gives.
    struct Evaluation {
        double logLikelihood = 0.0;
        std::vector<double> score{};
        /// The negative second derivatives, p by p.
        std::vector<double> information{};
    };

    /// Input      times in ascending order with their events; the predictors of each in the same
    ///            order, case after case
    CoxPartialLikelihood(std::span<const double> times,
                         std::span<const std::uint8_t> hasEvent,
                         std::vector<double> predictors);

    std::size_t predictorCount() const { return width_; }
    /// The standard deviation of each predictor, 1 for a constant one: a standard unit in its own.
    std::span<const double> units() const { return units_; }

    /// Method     one sweep from the last time to the first, in which the risk set grows
    /// Accuracy   no exponent overflows: each is taken from one near the largest of the risk set
    /// Cost       O(n p^2)
    Evaluation at(std::span<const double> beta) const;

private:
    struct RiskSet;

    void standardizePredictors();
    void addCase(RiskSet& risk, std::size_t i, std::span<const double> beta) const;
    void addEventTime(Evaluation& sums, const RiskSet& risk) const;

    std::span<const double> times_;
    std::span<const std::uint8_t> hasEvent_;
    std::size_t width_;
    std::vector<double> predictors_;
    std::vector<double> units_{};
};

}  // namespace sorvane
