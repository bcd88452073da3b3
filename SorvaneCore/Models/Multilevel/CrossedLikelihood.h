#pragma once

#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/LevelMeetings.h"
#include "SorvaneCore/Models/Multilevel/MultilevelProfile.h"

namespace sorvane {

/// The profiled likelihood of two crossed factors in their relative intercept variances.
///
/// The larger factor is eliminated, which is exact and cheap because its part of V is diagonal in
/// its levels; a matrix of the order of the smaller one is left to be factored. Nested factors leave
/// it diagonal.
class CrossedLikelihood {
public:
    /// The design must outlive this.
    CrossedLikelihood(const ScaledDesign& design,
                      const MultilevelRows& rows,
                      MultilevelCriterion criterion);

    /// Input      negative variances count as 0
    /// Failure    as `profileOf` -> absent
    /// Cost       O(b^3 / 3 + meetings * rows per level), b the levels of the smaller factor
    std::optional<MultilevelProfile> at(double lambdaA, double lambdaB, unsigned threads) const;

    /// How far a level's intercept lies from the fixed one, given the rows, and its variance
    /// relative to the residual one.
    struct Departure {
        double mean = 0.0;
        double variance = 0.0;
    };

    /// Of each level of the first factor at a setting that has a profile, of which `beta` is.
    ///
    /// Failure    as `at` -> none
    /// Cost       O(a b^2) beside an evaluation, a the levels of the larger factor
    std::vector<Departure> departures(double lambdaA,
                                      double lambdaB,
                                      std::span<const double> beta) const;

private:
    struct Reduced;

    Reduced eliminated(double lambda) const;
    std::vector<Departure> largerDepartures(double lambda,
                                            double smallerLambda,
                                            const Reduced& reduced,
                                            std::span<const double> beta) const;

    const ScaledDesign& design_;
    MultilevelCriterion criterion_;
    bool firstIsLarger_ = true;
    /// Rows of each level.
    std::vector<double> largerSizes_;
    std::vector<double> smallerSizes_;
    LevelMeetings meetings_;
    /// Means of the columns in each level of the larger factor, times the root of its rows.
    std::vector<double> largerProjections_;
    /// Sums of the columns in each level of the smaller one.
    std::vector<double> smallerSums_;
    /// Products of what the larger factor leaves of the columns.
    std::vector<double> within_;
};

}  // namespace sorvane
