#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Models/LatentClass/ExpectationMaximization.h"
#include "SorvaneCore/Models/LatentClass/MixtureBlock.h"

namespace sorvane {

/// A mixture of normal distributions with means of their own and one covariance of one common
/// factor, on indicators in standard deviations from their means.
class FactorMixture {
public:
    struct Parameters {
        std::vector<double> proportions{};
        /// classes * indicators entries, class by class.
        std::vector<double> means{};
        std::vector<double> loadings{};
        std::vector<double> residuals{};
    };

    /// Input      columns of one length, all values finite, none constant
    FactorMixture(std::vector<std::vector<double>> columns, std::size_t classes);

    std::size_t rows() const { return columns_.front().size(); }
    std::size_t indicators() const { return columns_.size(); }
    /// The residual variance below which none falls.
    static double smallestResidual();

    /// Rows drawn as means, with systematic shifts, and factors of three strengths; one generator
    /// runs through all starts.
    std::vector<Parameters> starts(std::int64_t count, std::uint64_t seed) const;
    ExpectationMaximization::Step<Parameters> step(const Parameters& parameters) const;
    /// The probabilities of the classes, for each row.
    std::vector<std::vector<double>> posteriors(const Parameters& parameters) const;
    /// The expected factor of each row, over the classes.
    std::vector<double> scores(const Parameters& parameters,
                               std::span<const std::vector<double>> posteriors) const;

    /// In the units of the indicators.
    double mean(const Parameters& parameters, std::size_t c, std::size_t j) const;
    double loading(const Parameters& parameters, std::size_t j) const;
    double residual(const Parameters& parameters, std::size_t j) const;
    /// What to add to a log likelihood for that of the indicators in their own units.
    double logLikelihoodShift() const;

private:
    struct Precision;

    void formLogDensities(const Parameters& parameters,
                          std::size_t first,
                          std::size_t count,
                          MixtureBlock& block) const;
    void updateFactor(Parameters& next, std::span<const double> sizes) const;

    /// Standardized.
    std::vector<std::vector<double>> columns_;
    std::size_t classes_;
    std::vector<double> centres_;
    std::vector<double> deviations_;
    /// The correlations of the indicators, row-major.
    std::vector<double> correlations_;
};

}  // namespace sorvane
