#pragma once

#include <algorithm>
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

    /// The probabilities of the classes for each of `rows` rows. `form` fills a block with the joint
    /// log densities of the rows from one on.
    template <typename Form>
    static std::vector<std::vector<double>> posteriors(std::size_t rows,
                                                       std::size_t classes,
                                                       Form&& form) {
        std::vector<std::vector<double>> result(rows, std::vector<double>(classes));
        MixtureBlock block(classes);
        for (std::size_t first = 0; first < rows; first += rowCount) {
            const std::size_t count = std::min(rowCount, rows - first);
            form(first, count, block);
            block.normalize(count);
            for (std::size_t i = 0; i < count; ++i) {
                for (std::size_t c = 0; c < classes; ++c) {
                    result[first + i][c] = block.of(c)[i];
                }
            }
        }
        return result;
    }

private:
    std::vector<std::array<double, rowCount>> values_;
    /// The largest log density of each row, and the sum of all relative to it.
    std::array<double, rowCount> largest_{};
    std::array<double, rowCount> relativeSum_{};
};

/// What the size of a class counts as, at least, where sums are divided by it.
inline constexpr double smallestClassSize = 1e-8;

/// The natural logarithm of a probability, not below that of 1e-15.
double flooredLog(double probability);

}  // namespace sorvane
