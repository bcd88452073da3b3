#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "SorvaneCore/Numerics/IRLS.h"

namespace sorvane::IRLS {

/// What one pass over the rows finds at given parameters; the objective is the log likelihood.
struct Pass {
    Evaluation evaluation{};
    /// By how much the linear predictor of the least fitting row leans to its response's side; for
    /// shares only.
    double smallestMargin = 0.0;
    /// The linear predictor farthest from 0; for rates the lowest, as a distance.
    double farthest = 0.0;
};

/// The likelihood of observations under a canonical link: one pass gives all that a round needs.
class CanonicalLikelihood {
public:
    CanonicalLikelihood(const Observations& observations, Link link)
        : data_(observations), link_(link) {}

    Pass at(std::span<const double> parameters) const;
    /// At fitted values next to the response. The gradient is the one of weighted least squares, so
    /// that the step from zero parameters leads to the first fit.
    Pass start() const;

    /// Whether the step has a part along which the likelihood grows without end: some rows move
    /// towards their response, and none away from it.
    ///
    /// Cost       O(rows * cols) for each row that has to be held still, of which there are fewer
    ///            than columns
    bool growsForever(std::span<const double> step) const;

private:
    /// How the rows' linear predictors move towards their response, in shares of their scale.
    struct Moves {
        double farthest = 0.0;
        /// The largest move away, as a number below 0, and its row.
        double worst = 0.0;
        std::size_t worstRow = 0;
    };
    Moves movesAlong(std::span<const double> direction) const;
    Pass sum(const double* parameters) const;

    Observations data_;
    Link link_;
};

}  // namespace sorvane::IRLS
