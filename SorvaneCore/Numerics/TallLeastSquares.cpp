#include "SorvaneCore/Numerics/TallLeastSquares.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/ColumnRankTest.h"

namespace sorvane::TallLeastSquares {

namespace {

constexpr std::size_t blockRows = 256;

/// The triangle of the rows seen so far, with the response as its last column.
class Triangle {
public:
    explicit Triangle(std::size_t cols)
        : cols_(cols), width_(cols + 1), upper_(cols * width_, 0.0), block_(blockRows * width_) {}

    /// Where the next block is to be written, column by column, `blockRows` apart.
    double* block() { return block_.data(); }

    /// Takes in the first `count` rows of the block.
    void absorbBlock(std::size_t count) {
        for (std::size_t k = 0; k < cols_; ++k) {
            eliminate(k, count);
        }
        const double* left = column(cols_);
        residualSquares_ += ColumnKernels::dot(left, left, count);
    }

    std::optional<Reduction> finish(std::size_t rows) const;

private:
    double* column(std::size_t j) { return &block_[j * blockRows]; }

    void eliminate(std::size_t k, std::size_t count);
    template <std::size_t Count>
    void reflect(std::size_t k, std::size_t firstColumn, std::size_t count, double scale);

    std::size_t cols_;
    std::size_t width_;
    std::vector<double> upper_;
    std::vector<double> block_;
    double head_ = 0.0;
    double residualSquares_ = 0.0;
};

/// Clears column k of the block with the reflector v = (head_, column k of the block), whose only
/// entry in the triangle is that of row k.
void Triangle::eliminate(std::size_t k, std::size_t count) {
    double& diagonal = upper_[k * width_ + k];
    const double below = ColumnKernels::dot(column(k), column(k), count);
    if (below == 0.0) {
        return;
    }
    const double norm = std::sqrt(diagonal * diagonal + below);
    const double replaced = diagonal >= 0.0 ? -norm : norm;
    head_ = diagonal - replaced;
    const double scale = 2.0 / (head_ * head_ + below);
    std::size_t j = k + 1;
    for (; j + 4 <= width_; j += 4) {
        reflect<4>(k, j, count, scale);
    }
    for (; j < width_; ++j) {
        reflect<1>(k, j, count, scale);
    }
    diagonal = replaced;
}

template <std::size_t Count>
void Triangle::reflect(std::size_t k, std::size_t firstColumn, std::size_t count, double scale) {
    std::array<const double*, Count> others;
    for (std::size_t c = 0; c < Count; ++c) {
        others[c] = column(firstColumn + c);
    }
    const auto along = ColumnKernels::dots<Count>(column(k), others, count);
    for (std::size_t c = 0; c < Count; ++c) {
        double& top = upper_[k * width_ + firstColumn + c];
        const double factor = scale * (head_ * top + along[c]);
        top -= factor * head_;
        ColumnKernels::subtractScaled(factor, column(k), column(firstColumn + c), count);
    }
}

std::optional<Reduction> Triangle::finish(std::size_t rows) const {
    Reduction reduction{.rows = rows,
                        .cols = cols_,
                        .rFactor = std::vector<double>(cols_ * cols_, 0.0),
                        .qtb = std::vector<double>(cols_),
                        .residualSumOfSquares = residualSquares_};
    ColumnRankTest rankTest(rows);
    for (std::size_t k = 0; k < cols_; ++k) {
        const double* row = &upper_[k * width_];
        const double norm = std::abs(row[k]);
        if (!rankTest.accepts(norm) || !std::isfinite(norm)) {
            return std::nullopt;
        }
        const double sign = row[k] < 0.0 ? -1.0 : 1.0;
        for (std::size_t j = k; j < cols_; ++j) {
            reduction.rFactor[k * cols_ + j] = sign * row[j];
        }
        reduction.qtb[k] = sign * row[cols_];
    }
    return reduction;
}

}  // namespace

std::optional<Reduction> reduceRows(std::span<const double> design,
                                    std::size_t rows,
                                    std::size_t cols,
                                    std::span<const double> b) {
    if (cols < 1 || rows < cols || b.size() != rows || design.size() % cols != 0 ||
        design.size() / cols != rows) {
        return std::nullopt;
    }
    Triangle triangle(cols);
    for (std::size_t first = 0; first < rows; first += blockRows) {
        const std::size_t count = std::min(blockRows, rows - first);
        ColumnKernels::gatherColumns(&design[first * cols], count, cols, blockRows,
                                     triangle.block());
        std::ranges::copy(b.subspan(first, count), triangle.block() + cols * blockRows);
        triangle.absorbBlock(count);
    }
    return triangle.finish(rows);
}

std::optional<Reduction> reduceColumns(std::span<const std::span<const double>> columns,
                                       std::span<const double> b) {
    const std::size_t rows = b.size();
    const std::size_t cols = columns.size();
    const auto fits = [rows](std::span<const double> column) {
        return column.size() == rows;
    };
    if (cols < 1 || rows < cols || !std::ranges::all_of(columns, fits)) {
        return std::nullopt;
    }
    Triangle triangle(cols);
    for (std::size_t first = 0; first < rows; first += blockRows) {
        const std::size_t count = std::min(blockRows, rows - first);
        for (std::size_t j = 0; j < cols; ++j) {
            std::ranges::copy(columns[j].subspan(first, count), triangle.block() + j * blockRows);
        }
        std::ranges::copy(b.subspan(first, count), triangle.block() + cols * blockRows);
        triangle.absorbBlock(count);
    }
    return triangle.finish(rows);
}

}  // namespace sorvane::TallLeastSquares
