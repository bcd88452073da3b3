#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/LevelMeetings.h"
#include "SorvaneCore/Models/Multilevel/LinkedDesign.h"

namespace sorvane {

/// The standard deviations of the intercepts of two factors.
struct CrossedSpread {
    double first = 1.0;
    double second = 1.0;
};

/// The marginal likelihood of counts or shares with the random intercepts of two factors, by
/// Laplace's approximation of the integral over all of them.
class CrossedLaplace {
public:
    /// All must outlive this.
    CrossedLaplace(const LinkedDesign& design, const MultilevelRows& rows);

    double logLikelihood(std::span<const double> predictor, const CrossedSpread& spread) {
        return logLikelihood(predictor, spread.first, spread.second);
    }

    /// See `LinkedInformation`, at the setting last asked for; empty where there is none.
    ///
    /// Cost       a step of the iteration for each fixed effect
    std::vector<double> information(std::span<const double> predictor,
                                    const CrossedSpread& spread) const;

    /// Method     Newton's iteration to the joint mode, from that of the setting before; the larger
    ///            factor is eliminated from each step
    /// Cost       per step O(n + meetings * rows per level + b^3 / 3), b the levels of the smaller
    ///            factor
    double logLikelihood(std::span<const double> predictor, double sigmaA, double sigmaB);

    /// A level's most likely intercept, with the error that the curvature there stands for.
    struct Mode {
        double intercept = 0.0;
        double error = 0.0;
    };
    /// Of each level of the first factor.
    ///
    /// Failure    no mode -> none
    /// Cost       as `logLikelihood`, and O(levels b^2)
    std::vector<Mode> modes(std::span<const double> predictor, double sigmaA, double sigmaB);

private:
    struct Spread {
        double larger = 0.0;
        double smaller = 0.0;
    };
    struct State;

    Spread spreadOf(double sigmaA, double sigmaB) const;
    /// The diagonal of the inverse of the negative Hessian, of the first factor's levels.
    std::vector<double> variances(const State& state) const;

    State at(const std::vector<double>& u, std::span<const double> predictor, Spread spread) const;
    /// The step to the mode of the parabola, in place of the gradient; false where there is none.
    bool solve(State& state) const;

    const LinkedDesign& design_;
    const ClusterCodes& larger_;
    const ClusterCodes& smaller_;
    bool firstIsLarger_ = true;
    LevelMeetings meetings_;
    /// The meeting that each row belongs to.
    std::vector<std::uint32_t> meetingOfRow_;
    /// In standard deviations, the larger factor's first.
    std::vector<double> mode_;
};

}  // namespace sorvane
