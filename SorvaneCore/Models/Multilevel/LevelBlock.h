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
    /// Where the entries of a row are, by column: those up to the diagonal, or that on it alone.
    double* row(std::size_t level) { return entries_.data() + (isDiagonal_ ? 0 : level * levels_); }
    /// Multiplies all entries, then adds 1 on the diagonal.
    void scaleAndAddIdentity(double factor);

    /// Replaces the matrix by its Cholesky factor; false where it is not positive definite.
    ///
    /// Cost       O(levels^3 / 3), or O(levels) where diagonal
    [[nodiscard]] bool factor(unsigned threads);
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
