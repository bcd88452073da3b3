#pragma once

#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// The rows of a model in which the outcome and every predictor have a number.
struct DenseColumns {
    std::vector<std::vector<double>> predictors{};
    /// Empty where there is no outcome.
    std::vector<double> outcome{};

    std::vector<std::span<const double>> predictorSpans() const {
        return {predictors.begin(), predictors.end()};
    }

    /// Input      columns of one length
    static DenseColumns of(std::span<const NumericColumn> predictors, const NumericColumn* outcome);
};

/// Whether every column has this length.
bool haveOneLength(std::span<const NumericColumn> predictors, std::size_t length);
bool haveOneLength(std::span<const std::span<const double>> predictors, std::size_t length);

}  // namespace sorvane
