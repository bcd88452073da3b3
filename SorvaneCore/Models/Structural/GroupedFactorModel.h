#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Structural/MeasurementInvariance.h"
#include "SorvaneCore/Numerics/IRLS.h"

namespace sorvane {

/// The means and covariances of the items in one group, n in the denominator.
struct GroupMomentsOfItems {
    double n = 0.0;
    std::vector<double> means{};
    /// p by p, row-major.
    std::vector<double> covariance{};
    double logDeterminant = 0.0;
};

/// One factor in several groups, with some of its coefficients held equal.
///
/// A group has p loadings, p intercepts, p residual variances, the variance of the factor and its
/// mean; the level says which stand for the same free coefficient, and which are fixed at 1 and 0.
class GroupedFactorModel {
public:
    /// The moments must outlive this.
    GroupedFactorModel(std::span<const GroupMomentsOfItems> groups,
                       std::size_t items,
                       InvarianceLevel level);

    std::size_t freeCount() const { return freeCount_; }
    std::int64_t degreesOfFreedom() const;
    /// Half the variance of each item by its factor, pooled over the groups.
    std::vector<double> start() const;

    /// The log likelihood but for constants (minus half of chi-square), its gradient and the
    /// expected information; minus infinity where a covariance is not positive definite.
    IRLS::Evaluation at(std::span<const double> point) const;

    /// The coefficients of one group.
    struct Coefficients {
        std::span<const double> loadings{};
        std::span<const double> intercepts{};
        std::span<const double> residuals{};
        double factorVariance = 1.0;
        double factorMean = 0.0;
    };
    static Coefficients view(std::span<const double> all, std::size_t items);
    /// All coefficients of a group, in the order above.
    std::vector<double> coefficientsOf(std::span<const double> point, std::size_t group) const;
    /// Where a group's coefficient stands among the free ones; negative where it is fixed.
    std::int64_t placeOf(std::size_t group, std::size_t coefficient) const {
        return places_[group * perGroup() + coefficient];
    }

    /// What freeing one coefficient of one group would do.
    struct Release {
        double modificationIndex = 0.0;
        double expectedChange = 0.0;
    };
    /// Input      a maximum with the inverse of its information
    Release release(std::span<const double> point,
                    std::span<const double> inverse,
                    std::size_t group,
                    std::size_t coefficient) const;

    /// The root mean square residual of covariances and means in units of the sample, averaged over
    /// groups by their cases.
    double srmr(std::span<const double> point) const;

private:
    /// Of one group, over its own coefficients.
    struct Part {
        double discrepancy = 0.0;
        std::vector<double> score{};
        std::vector<double> information{};
        bool isUsable = false;
    };

    std::size_t perGroup() const { return 3 * items_ + 2; }
    Part partOf(std::size_t group, std::span<const double> coefficients) const;

    std::span<const GroupMomentsOfItems> groups_;
    std::size_t items_;
    std::size_t freeCount_ = 0;
    std::vector<std::int64_t> places_;
};

}  // namespace sorvane
