#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Structural/SEMModel.h"

namespace sorvane {

/// A structural model as two matrices over all variables, the observed ones first: A of the paths,
/// and P of variances and covariances, which imply (I - A)^-1 P (I - A)^-T.
///
/// Reference  McArdle and McDonald (1984), Some algebraic properties of the reticular action model
class ReticularModel {
public:
    /// The entry of a coefficient: of A, from the variable `column` to `row`, or of P.
    struct Entry {
        bool isDirected = false;
        std::size_t row = 0;
        std::size_t column = 0;
    };

    /// What a set of coefficients implies, each a square matrix over all variables.
    struct Moments {
        /// (I - A)^-1: what acts on what by all ways.
        std::vector<double> total{};
        std::vector<double> covariance{};
    };

    explicit ReticularModel(const SEMModel& model);

    std::size_t observedCount() const { return observedCount_; }
    /// Of all variables.
    std::size_t size() const { return size_; }
    /// One per slot of the model.
    std::span<const Entry> entries() const { return entries_; }

    /// Input      one coefficient per slot
    /// Failure    I - A has no inverse -> absent      Cost O(size^3)
    std::optional<Moments> moments(std::span<const double> coefficients) const;
    /// The part of a matrix over all variables that concerns the observed ones.
    std::vector<double> observedPart(std::span<const double> matrix) const;

    /// For each variable the observed one that stands for it: of a latent one its first indicator,
    /// or that of its first indicator; absent where that goes in a circle.
    std::vector<std::optional<std::size_t>> markers(const SEMModel& model) const;
    /// The units of all variables when the observed ones have the given: that of its marker for a
    /// latent one, 1 where it has none.
    std::vector<double> variableUnits(const SEMModel& model,
                                      std::span<const double> observedUnits) const;
    /// What each coefficient is multiplied with to have it in the given units of all variables.
    std::vector<double> units(std::span<const double> variableUnits) const;
    /// A covariance of all variables in the given units, from that in standard units. I - A is
    /// inverted in standard ones, where units far apart do not make it look singular.
    static std::vector<double> inUnits(std::vector<double> covariance,
                                       std::span<const double> variableUnits);

private:
    std::size_t observedCount_;
    std::size_t size_;
    std::vector<Entry> entries_{};
};

}  // namespace sorvane
