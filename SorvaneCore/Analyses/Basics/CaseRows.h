#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// Cases that have a number in every variable, one after another.
struct CaseRows {
    std::size_t count = 0;
    std::size_t width = 0;
    /// Of case i and variable j at i * width + j.
    std::vector<double> cells{};

    std::span<const double> row(std::size_t i) const {
        return std::span(cells).subspan(i * width, width);
    }

    bool operator==(const CaseRows&) const = default;

    /// The rows in which every column has a number.
    static CaseRows complete(std::span<const NumericColumn> columns);
    /// Failure    rows that differ in width -> absent
    static std::optional<CaseRows> of(std::span<const std::vector<double>> rows);
};

}  // namespace sorvane
