#include "SorvaneCore/Analyses/Clustering/CaseColumns.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"

namespace sorvane {

namespace {

/// Brings values whose squares no number can hold near 1, by a power of 2, which rounds nothing and
/// leaves standard scores as they are.
void bringIntoRange(std::span<double> values) {
    constexpr int widest = 400;
    double largest = 0.0;
    for (const double value : values) {
        largest = std::max(largest, std::abs(value));
    }
    const int exponent = largest > 0.0 ? std::ilogb(largest) : 0;
    if (std::abs(exponent) > widest) {
        for (double& value : values) {
            value = std::scalbn(value, -exponent);
        }
    }
}

}  // namespace

std::optional<CaseColumns> CaseColumns::of(const CaseRows& rows, bool standardize) {
    if (!std::ranges::all_of(rows.cells, [](double cell) { return std::isfinite(cell); })) {
        return std::nullopt;
    }
    CaseColumns result;
    result.count_ = rows.count;
    result.width_ = rows.width;
    result.columns_.resize(rows.cells.size());
    ColumnKernels::gatherColumns(rows.cells.data(), rows.count, rows.width, rows.count,
                                 result.columns_.data());
    if (standardize) {
        result.standardizeColumns();
    }
    return result;
}

void CaseColumns::standardizeColumns() {
    for (std::size_t j = 0; j < width_ && count_ > 0; ++j) {
        const std::span<double> values = column(j);
        bringIntoRange(values);
        const double mean = SampleMoments::mean(values);
        const double squares = SampleMoments::sumOfSquares(values, mean);
        const double deviation =
            count_ > 1 ? std::sqrt(squares / static_cast<double>(count_ - 1)) : 0.0;
        const double unit = deviation > 0.0 ? deviation : 1.0;
        for (double& value : values) {
            value = (value - mean) / unit;
        }
    }
}

std::vector<double> CaseColumns::row(std::size_t i) const {
    std::vector<double> result(width_);
    for (std::size_t j = 0; j < width_; ++j) {
        result[j] = columns_[j * count_ + i];
    }
    return result;
}

CaseRows CaseColumns::rows() const {
    CaseRows result{
        .count = count_, .width = width_, .cells = std::vector<double>(columns_.size())};
    for (std::size_t i = 0; i < count_; ++i) {
        for (std::size_t j = 0; j < width_; ++j) {
            result.cells[i * width_ + j] = columns_[j * count_ + i];
        }
    }
    return result;
}

void CaseColumns::squaredDistances(std::span<const double> point,
                                   std::size_t first,
                                   std::span<double> out) const {
    std::ranges::fill(out, 0.0);
    for (std::size_t j = 0; j < width_; ++j) {
        const double* values = &columns_[j * count_ + first];
        const double centre = point[j];
        for (std::size_t i = 0; i < out.size(); ++i) {
            const double difference = values[i] - centre;
            out[i] += difference * difference;
        }
    }
}

}  // namespace sorvane
