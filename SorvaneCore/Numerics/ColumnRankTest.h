#pragma once

#include <cstddef>

namespace sorvane {

/// Decides, column after column, whether a column is collinear with those before it.
///
/// Input      the Euclidean norm of what is left of each column, in column order
/// Method     norm against (largest norm so far) * rows * 1e-12, or against 1e-300 where that
///            product is smaller still
/// Accuracy   the tolerance grows with the number of rows: at a million cases a column must keep
///            more than 1e-6 of the largest norm, so a nearly collinear predictor that passes in a
///            small sample can fail in a large one; it also depends on the units of the columns
class ColumnRankTest {
public:
    explicit ColumnRankTest(std::size_t rows) : rows_(static_cast<double>(rows)) {}

    /// Whether the column with this remaining norm adds to the rank; a NaN passes here.
    bool accepts(double norm) {
        if (norm > largestNorm_) {
            largestNorm_ = norm;
        }
        const double tolerance = largestNorm_ * rows_ * relativeTolerance;
        return !(norm < (tolerance >= smallestNorm ? tolerance : smallestNorm));
    }

private:
    static constexpr double relativeTolerance = 1e-12;
    static constexpr double smallestNorm = 1e-300;

    double rows_;
    double largestNorm_ = 0.0;
};

}  // namespace sorvane
