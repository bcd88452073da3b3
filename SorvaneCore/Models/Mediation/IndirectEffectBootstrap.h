#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace sorvane {

/// The product a b over resamples of the rows of a mediation.
class IndirectEffectBootstrap {
public:
    /// Input      the columns X, M and Y of one length, the covariates between
    IndirectEffectBootstrap(std::span<const std::vector<double>* const> covariates,
                            const std::vector<double>& x,
                            const std::vector<double>& mediator,
                            const std::vector<double>& outcome);

    /// The products of those resamples in which both models can be fitted, in order of drawing.
    ///
    /// Method     How often each row is drawn weights its products of deviations; sweeping out the
    ///            intercept, the covariates and X leaves a, sweeping out M leaves b. A column of
    ///            which less than 1e-12 is left counts as collinear. The sequence of draws is
    ///            entered where each resample begins, so that threads do not matter
    /// Cost       O(count * rows * columns^2) on all threads
    std::vector<double> estimates(std::size_t count, std::uint64_t seed) const;

private:
    struct Workspace;
    struct Block {
        std::size_t first = 0;
        std::size_t count = 0;
    };

    std::optional<double> estimate(std::uint64_t seed,
                                   std::size_t resample,
                                   Workspace& workspace) const;
    void draw(std::uint64_t seed, std::size_t resample, Workspace& workspace) const;
    void accumulate(Workspace& workspace) const;
    template <std::size_t Count>
    std::size_t addProducts(std::size_t i, std::size_t j, Block block, Workspace& workspace) const;

    std::size_t rows_;
    /// Covariates, X, M and Y.
    std::size_t width_;
    /// Column after column, each about its mean.
    std::vector<double> deviations_;
};

}  // namespace sorvane
