#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Structural/ReticularModel.h"

namespace sorvane {

/// How far the covariance that a model implies is from that of the sample, by normal theory:
/// F = tr(S/Sigma) + ln|Sigma| - ln|S| - p, over the free coefficients.
class SEMDiscrepancy {
public:
    /// What stands for F where Sigma is not positive definite.
    static constexpr double unusable = 1e12;

    /// Input      for each slot, the value of a fixed one and whether it is free; the covariance of
    ///            the sample with its log determinant
    SEMDiscrepancy(const ReticularModel& form,
                   std::vector<double> coefficients,
                   const std::vector<bool>& isFree,
                   std::vector<double> sample,
                   double sampleLogDeterminant);

    /// Cost       O(size^3), the others as well; one point is evaluated once
    double value(std::span<const double> point);
    /// Method     Every derivative of Sigma has rank 2, so that each slot takes one inner product
    /// Returns    zeros where F cannot be had
    std::vector<double> gradient(std::span<const double> point);
    /// The expected information of one case, row-major over the free coefficients; absent where F
    /// cannot be had.
    std::optional<std::vector<double>> information(std::span<const double> point);

    /// All coefficients, the free ones from the point.
    std::vector<double> coefficientsAt(std::span<const double> point) const;

private:
    struct State {
        std::vector<double> point{};
        ReticularModel::Moments moments{};
        std::vector<double> inverse{};
        double value = unusable;
        bool isUsable = false;
    };
    /// The derivative of Sigma by a coefficient is share (u v' + v u').
    struct Directions {
        std::vector<double> u{};
        std::vector<double> v{};
        std::vector<double> shares{};
    };

    void evaluate(std::span<const double> point);
    Directions directions() const;

    const ReticularModel& form_;
    std::vector<double> coefficients_;
    std::vector<std::size_t> freeSlots_{};
    std::vector<double> sample_;
    double sampleLogDeterminant_;
    State state_{};
};

}  // namespace sorvane
