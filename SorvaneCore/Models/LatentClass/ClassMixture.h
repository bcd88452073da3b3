#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "SorvaneCore/Models/LatentClass/CategoryPatterns.h"
#include "SorvaneCore/Models/LatentClass/ExpectationMaximization.h"
#include "SorvaneCore/Models/LatentClass/MixtureBlock.h"

namespace sorvane {

/// A mixture of independent categories.
class ClassMixture {
public:
    struct Parameters {
        std::vector<double> proportions{};
        /// For each class the probabilities of all categories, indicator after indicator.
        std::vector<std::vector<double>> responses{};
    };

    /// The patterns must outlive this.
    ClassMixture(const CategoryPatterns& patterns, std::size_t classes);

    /// Uniform draws with systematic weights; one generator runs through all starts.
    std::vector<Parameters> starts(std::int64_t count, std::uint64_t seed) const;
    ExpectationMaximization::Step<Parameters> step(const Parameters& parameters) const;
    /// The probabilities of the classes, for each row.
    std::vector<std::vector<double>> posteriors(const Parameters& parameters) const;
    /// The probabilities of each indicator's categories in one class.
    std::vector<std::vector<double>> byIndicator(const std::vector<double>& responses) const;
    /// Probabilities that are free to vary, of one class.
    std::int64_t freeResponses() const;

private:
    std::vector<std::vector<double>> logResponses(const Parameters& parameters) const;
    void formLogDensities(const Parameters& parameters,
                          const std::vector<std::vector<double>>& logResponses,
                          std::size_t first,
                          MixtureBlock& block) const;
    std::size_t blockEnd(std::size_t first) const;
    Parameters maximized(const std::vector<double>& sizes,
                         std::vector<std::vector<double>> weights) const;
    /// Makes each indicator's entries add up to 1.
    void normalize(std::vector<double>& responses) const;

    const CategoryPatterns& patterns_;
    std::size_t classes_;
    /// Where each indicator's categories begin, and the number of all at the end.
    std::vector<std::size_t> offsets_;
    /// The category of each indicator in each pattern, counted through all indicators.
    std::vector<std::uint32_t> entries_;
};

}  // namespace sorvane
