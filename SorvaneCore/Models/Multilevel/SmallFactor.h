#pragma once

#include <array>

namespace sorvane {

/// The Cholesky factor L of a symmetric matrix, 2 by 2.
struct SmallFactor {
    double l00 = 1.0;
    double l10 = 0.0;
    double l11 = 1.0;
    /// Whether the matrix was positive definite; the entries are no numbers else.
    bool isValid = true;

    /// Of a matrix by its first entry, its entry beside the diagonal and its determinant, which
    /// keeps the digits that the last pivot would lose.
    static SmallFactor of(double first, double beside, double determinant);

    double logDeterminant() const;
    /// L^-1 x.
    std::array<double, 2> forward(const std::array<double, 2>& x) const;
    /// L'^-1 x.
    std::array<double, 2> backward(const std::array<double, 2>& x) const;
};

}  // namespace sorvane
