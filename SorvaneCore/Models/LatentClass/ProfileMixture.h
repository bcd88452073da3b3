#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "SorvaneCore/Models/LatentClass/ExpectationMaximization.h"
#include "SorvaneCore/Models/LatentClass/MixtureBlock.h"

namespace sorvane {

/// A mixture of normal distributions with independent indicators.
class ProfileMixture {
public:
    struct Parameters {
        std::vector<double> proportions{};
        /// classes * indicators entries, class by class; so the deviations.
        std::vector<double> means{};
        std::vector<double> standardDeviations{};
    };

    /// Input      columns of one length, all values finite
    ProfileMixture(std::vector<std::vector<double>> columns, std::size_t classes);

    std::size_t rows() const { return columns_.front().size(); }

    /// Rows drawn as means, with systematic shifts; one generator runs through all starts.
    std::vector<Parameters> starts(std::int64_t count, std::uint64_t seed) const;
    ExpectationMaximization::Step<Parameters> step(const Parameters& parameters) const;
    /// The probabilities of the classes, for each row.
    std::vector<std::vector<double>> posteriors(const Parameters& parameters) const;

private:
    class Moments;

    void formLogDensities(const Parameters& parameters,
                          std::size_t first,
                          std::size_t count,
                          MixtureBlock& block) const;

    std::vector<std::vector<double>> columns_;
    std::size_t classes_;
    /// Of each indicator, n in the denominator, at least 1e-8.
    std::vector<double> variances_;
};

}  // namespace sorvane
