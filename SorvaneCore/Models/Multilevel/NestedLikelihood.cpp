#include "SorvaneCore/Models/Multilevel/NestedLikelihood.h"

#include <utility>
#include <vector>

namespace sorvane {

namespace {

/// Adds the products of a row with itself to the upper triangle.
void addSquare(std::vector<double>& products, const double* row, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) {
        for (std::size_t j = i; j < width; ++j) {
            products[i * width + j] += row[i] * row[j];
        }
    }
}

}  // namespace

std::optional<MultilevelProfile> NestedLikelihood::at(const RandomCovariance& g) const {
    const std::size_t width = sums_.width();
    std::vector<double> products(sums_.within().begin(), sums_.within().end());
    std::vector<double> whitened(2 * width);
    double sumLogDetV = 0.0;
    for (std::size_t c = 0; c < sums_.clusterCount(); ++c) {
        const SmallFactor factor = sums_.factor(c, g);
        if (!factor.isValid) {
            return std::nullopt;
        }
        sumLogDetV += factor.logDeterminant();
        const std::span<const double> projection = sums_.projection(c);
        for (std::size_t j = 0; j < width; ++j) {
            whitened[j] = projection[j] / factor.l00;
        }
        addSquare(products, whitened.data(), width);
        if (sums_.effects() == 2) {
            for (std::size_t j = 0; j < width; ++j) {
                whitened[width + j] =
                    (projection[width + j] - factor.l10 * whitened[j]) / factor.l11;
            }
            addSquare(products, &whitened[width], width);
        }
    }
    return profileOf(std::move(products), sumLogDetV, design_, criterion_);
}

}  // namespace sorvane
