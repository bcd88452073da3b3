#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace sorvane {

/// A symmetric matrix over the levels of one of two factors. It is diagonal where the other factor
/// is nested in it.
class LevelBlock {
public:
    /// All zeros.
    LevelBlock(std::size_t levels, bool isDiagonal);

    std::size_t levels() const { return levels_; }
    /// An entry of the lower triangle; on the diagonal only, where the matrix is diagonal.
    double& operator()(std::size_t row, std::size_t column) {
        return entries_[isDiagonal_ ? row : row * levels_ + column];
    }
    /// Multiplies all entries, then adds 1 on the diagonal.
    void scaleAndAddIdentity(double factor);

    /// Replaces the matrix by its Cholesky factor; false where it is not positive definite.
    ///
    /// Cost       O(levels^3 / 3), or O(levels) where diagonal
    [[nodiscard]] bool factor();
    /// Of the matrix whose factor this is.
    double logDeterminant() const;
    /// Solutions with the factor and with its transpose, in place, `width` entries a level.
    void solveLower(std::span<double> b, std::size_t width) const;
    void solveLowerTransposed(std::span<double> b, std::size_t width) const;

private:
    std::size_t levels_;
    bool isDiagonal_;
    std::vector<double> entries_;
};

}  // namespace sorvane
