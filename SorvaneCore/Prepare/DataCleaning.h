#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextTable.h"
#include "SorvaneCore/Prepare/OutlierMethod.h"

namespace sorvane {

/// Values outside a range that was declared.
struct OutOfRangeReport {
    std::int64_t belowCount = 0;
    std::int64_t aboveCount = 0;
    std::int64_t flaggedCount = 0;
    /// Row positions, counted from 0.
    std::vector<std::int64_t> belowIndices{};
    std::vector<std::int64_t> aboveIndices{};
    std::optional<double> observedMin{};
    std::optional<double> observedMax{};

    bool operator==(const OutOfRangeReport&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    OutOfRangeReport,
    (),
    (belowCount, aboveCount, flaggedCount, belowIndices, aboveIndices, observedMin, observedMax))

/// Values far from the rest.
struct OutlierReport {
    OutlierMethod method = OutlierMethod::iqr;
    std::optional<double> lowerFence{};
    std::optional<double> upperFence{};
    /// Row positions, counted from 0.
    std::vector<std::int64_t> flaggedIndices{};
    std::int64_t flaggedCount = 0;

    bool operator==(const OutlierReport&) const = default;
};
BOOST_DESCRIBE_STRUCT(OutlierReport,
                      (),
                      (method, lowerFence, upperFence, flaggedIndices, flaggedCount))

/// Rows that are the same.
struct DuplicateReport {
    std::int64_t duplicateGroupCount = 0;
    /// All rows of the groups, the first of each included.
    std::int64_t totalDuplicateRows = 0;
    /// Row positions, counted from 0; groups in order of their first row.
    std::vector<std::vector<std::int64_t>> groups{};

    bool operator==(const DuplicateReport&) const = default;
};
BOOST_DESCRIBE_STRUCT(DuplicateReport, (), (duplicateGroupCount, totalDuplicateRows, groups))

/// Checks of a table. They report and change nothing.
namespace DataCleaning {

/// Input      a bound that is absent is not tested; a value equal to a bound is in range
OutOfRangeReport outOfRange(const NumericColumn& values,
                            std::optional<double> lower,
                            std::optional<double> upper);

/// The numbers with those out of range made absent.
std::vector<std::optional<double>> clampToMissing(const NumericColumn& values,
                                                  std::optional<double> lower,
                                                  std::optional<double> upper);

/// The values beyond the fences; one on a fence stays inside.
///
/// Method     `iqr`: the quartiles, interpolated linearly, and 1.5 times their distance beyond
///            them. `zScore`: more than three standard deviations (n - 1) from the mean
/// Failure    no value, or for `zScore` fewer than two or equal values -> no fences, nothing flagged
/// Cost       O(n)
OutlierReport outliers(const NumericColumn& values, OutlierMethod method);

/// The p quantile by linear interpolation at p (n - 1) of the sorted values; absent without values.
std::optional<double> percentile(std::span<const double> sorted, double p);

/// Rows whose cells are the same texts as they stand, joined by the unit separator (code 31).
///
/// Cost       O(rows * columns): half a second for a million rows of 20 columns
DuplicateReport duplicateRows(const TextTable& rows);
/// The same by some columns alone.
DuplicateReport duplicateRows(const TextTable& rows, std::span<const std::size_t> keyColumns);

}  // namespace DataCleaning

}  // namespace sorvane
