#include "SorvaneCore/Analyses/Reliability/ItemMoments.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"

namespace sorvane {

namespace {

/// Sums over all prepared rows of deviations from fixed centres; the total stands after the items.
class CentredSums {
public:
    CentredSums(std::size_t itemCount, std::vector<double> centres)
        : width_(itemCount + 1),
          centres_(std::move(centres)),
          deviations_(width_ * PreparedItems::blockRows),
          sums_(width_, 0.0),
          products_(width_ * width_, 0.0),
          missing_(itemCount, 0) {}

    void add(const PreparedBlock& block, std::size_t inputRows);

    /// Without cases the means are the centres.
    ItemMoments moments() const;
    /// Whether the centres lie within a standard deviation of the means.
    bool centresAreNear() const;

private:
    double* column(std::size_t j) { return &deviations_[j * PreparedItems::blockRows]; }

    void takeDeviations(const PreparedBlock& block);
    void addProducts(std::size_t rows);

    std::size_t width_;
    std::size_t cases_ = 0;
    std::vector<double> centres_;
    std::vector<double> deviations_;
    std::vector<double> sums_;
    std::vector<double> products_;
    std::vector<std::int64_t> missing_;
};

/// The total of each row, in item order, after the items.
void totalRows(const PreparedBlock& block, std::size_t itemCount, double* totals) {
    std::fill_n(totals, block.rows, 0.0);
    for (std::size_t j = 0; j < itemCount; ++j) {
        const double* values = block.item(j);
        for (std::size_t i = 0; i < block.rows; ++i) {
            totals[i] += values[i];
        }
    }
}

std::vector<double> blockMeans(const PreparedBlock& block, std::size_t itemCount) {
    std::vector<double> means;
    for (std::size_t j = 0; j < itemCount; ++j) {
        means.push_back(SampleMoments::mean({block.item(j), block.rows}));
    }
    std::array<double, PreparedItems::blockRows> totals;
    totalRows(block, itemCount, totals.data());
    means.push_back(SampleMoments::mean({totals.data(), block.rows}));
    return means;
}

void CentredSums::add(const PreparedBlock& block, std::size_t inputRows) {
    for (std::size_t j = 0; j < missing_.size(); ++j) {
        const std::uint8_t* present = &block.present[j * PreparedItems::blockRows];
        std::uint32_t answers = 0;
        for (std::size_t i = 0; i < inputRows; ++i) {
            answers += present[i];
        }
        missing_[j] += static_cast<std::int64_t>(inputRows - answers);
    }
    takeDeviations(block);
    addProducts(block.rows);
    cases_ += block.rows;
}

void CentredSums::takeDeviations(const PreparedBlock& block) {
    totalRows(block, width_ - 1, column(width_ - 1));
    for (std::size_t j = 0; j < width_; ++j) {
        const double* values = j + 1 < width_ ? block.item(j) : column(j);
        double* deviations = column(j);
        const double centre = centres_[j];
        for (std::size_t i = 0; i < block.rows; ++i) {
            deviations[i] = values[i] - centre;
        }
        sums_[j] += SampleMoments::sum({deviations, block.rows});
    }
}

void CentredSums::addProducts(std::size_t rows) {
    constexpr std::size_t together = 4;
    for (std::size_t i = 0; i < width_; ++i) {
        std::size_t j = i;
        for (; j + together <= width_; j += together) {
            const std::array<const double*, together> others = {column(j), column(j + 1),
                                                                column(j + 2), column(j + 3)};
            const std::array<double, together> sums =
                ColumnKernels::dots<together>(column(i), others, rows);
            for (std::size_t c = 0; c < together; ++c) {
                products_[i * width_ + j + c] += sums[c];
            }
        }
        for (; j < width_; ++j) {
            products_[i * width_ + j] += ColumnKernels::dot(column(i), column(j), rows);
        }
    }
}

bool CentredSums::centresAreNear() const {
    for (std::size_t j = 0; j < width_; ++j) {
        const double square = sums_[j] * sums_[j];
        if (square > products_[j * width_ + j] * static_cast<double>(cases_) / 2.0) {
            return false;
        }
    }
    return true;
}

ItemMoments CentredSums::moments() const {
    ItemMoments result{.itemCount = width_ - 1,
                       .cases = cases_,
                       .means = centres_,
                       .products = products_,
                       .missingCounts = missing_};
    if (cases_ == 0) {
        return result;
    }
    const auto n = static_cast<double>(cases_);
    for (std::size_t i = 0; i < width_; ++i) {
        result.means[i] += sums_[i] / n;
        for (std::size_t j = i; j < width_; ++j) {
            const double product = products_[i * width_ + j];
            // What overflowed stays infinite: a correction of its size would leave no number.
            const double corrected =
                std::isfinite(product) ? product - sums_[i] * sums_[j] / n : product;
            result.products[i * width_ + j] = corrected;
            result.products[j * width_ + i] = corrected;
        }
    }
    return result;
}

CentredSums sumsAround(const PreparedItems& items, std::vector<double> centres) {
    CentredSums sums(items.itemCount(), std::move(centres));
    std::size_t row = 0;
    items.forEachBlock([&items, &sums, &row](const PreparedBlock& block) {
        sums.add(block, std::min(PreparedItems::blockRows, items.inputRows() - row));
        row += PreparedItems::blockRows;
    });
    return sums;
}

/// The means of the first block that holds a prepared row; zeros when none does.
std::vector<double> firstMeans(const PreparedItems& items) {
    PreparedBlock block(items.itemCount());
    for (std::size_t row = 0; row < items.inputRows(); row += PreparedItems::blockRows) {
        items.read(row, block);
        if (block.rows > 0) {
            return blockMeans(block, items.itemCount());
        }
    }
    return std::vector<double>(items.itemCount() + 1, 0.0);
}

}  // namespace

ItemMoments ItemMoments::of(const PreparedItems& items) {
    const CentredSums sums = sumsAround(items, firstMeans(items));
    const ItemMoments moments = sums.moments();
    return sums.centresAreNear() ? moments : sumsAround(items, moments.means).moments();
}

std::optional<double> ItemMoments::variance(std::size_t index) const {
    if (cases < 2) {
        return std::nullopt;
    }
    return product(index, index) / static_cast<double>(cases - 1);
}

}  // namespace sorvane
