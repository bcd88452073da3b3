#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace sorvane {

/// The classes of some rows: log densities, which become probabilities.
class MixtureBlock {
public:
    static constexpr std::size_t rowCount = 128;

    explicit MixtureBlock(std::size_t classes) : values_(classes) {}

    std::size_t classes() const { return values_.size(); }
    /// Of one class, a value per row.
    std::array<double, rowCount>& of(std::size_t classIndex) { return values_[classIndex]; }
    const std::array<double, rowCount>& of(std::size_t classIndex) const {
        return values_[classIndex];
    }

    /// Replaces joint log densities of the first `count` rows by the probabilities of the classes.
    void normalize(std::size_t count);
    /// The log likelihood of a row that has been normalized.
    double logLikelihood(std::size_t row) const;
    /// The sum of that over the first `count` rows.
    double logLikelihoodOf(std::size_t count) const;

private:
    std::vector<std::array<double, rowCount>> values_;
    /// The largest log density of each row, and the sum of all relative to it.
    std::array<double, rowCount> largest_{};
    std::array<double, rowCount> relativeSum_{};
};

/// The natural logarithm of a probability, not below that of 1e-15.
double flooredLog(double probability);

}  // namespace sorvane
