#pragma once

#include <boost/describe/class.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// How well the other predictors tell one predictor.
struct VIFEntry {
    std::string name{};
    /// 1 / (1 - R^2); infinite when R^2 is 1.
    double vif = 1.0;
    double tolerance = 1.0;

    bool operator==(const VIFEntry&) const = default;
};
BOOST_DESCRIBE_STRUCT(VIFEntry, (), (name, vif, tolerance))

namespace VarianceInflation {

/// The variance inflation factor of each predictor, from its regression on the others.
///
/// Input      columns of one length, dense; or columns of which the complete rows count
/// Failure    fewer than two predictors, names or lengths that do not match, fewer cases than
///            predictors + 2, a fit that cannot be had -> absent
/// Cost       O(n p^3)
std::optional<std::vector<VIFEntry>> factors(std::span<const std::span<const double>> predictors,
                                             std::span<const std::string> names);
std::optional<std::vector<VIFEntry>> factors(std::span<const NumericColumn> predictors,
                                             std::span<const std::string> names);

}  // namespace VarianceInflation

}  // namespace sorvane
