#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/CaseRows.h"

namespace sorvane {

/// The same cases variable after variable, as distances between many cases are computed.
class CaseColumns {
public:
    /// The cases as they are, or each variable brought to mean 0 and standard deviation 1 (n - 1);
    /// a variable without spread is only centred.
    ///
    /// Failure    a number that is not finite -> absent
    static std::optional<CaseColumns> of(const CaseRows& rows, bool standardize);

    std::size_t count() const { return count_; }
    std::size_t width() const { return width_; }
    std::vector<double> row(std::size_t i) const;
    CaseRows rows() const;

    /// The squared Euclidean distances of the cases from `first` on to one point, as many as `out`
    /// holds.
    void squaredDistances(std::span<const double> point,
                          std::size_t first,
                          std::span<double> out) const;

private:
    std::span<double> column(std::size_t j) {
        return std::span(columns_).subspan(j * count_, count_);
    }
    void standardizeColumns();

    std::size_t count_ = 0;
    std::size_t width_ = 0;
    std::vector<double> columns_;
};

}  // namespace sorvane
