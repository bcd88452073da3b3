#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

struct BreuschPaganResult {
    /// n R^2 of the squared residuals on the predictors.
    double koenkerStatistic = 0.0;
    double koenkerPValue = 1.0;
    /// Half the explained sum of squares of the scaled squared residuals.
    double classicStatistic = 0.0;
    double classicPValue = 1.0;
    /// The number of predictors.
    std::int64_t df = 0;
    std::int64_t n = 0;

    bool operator==(const BreuschPaganResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(BreuschPaganResult,
                      (),
                      (koenkerStatistic, koenkerPValue, classicStatistic, classicPValue, df, n))

namespace BreuschPagan {

/// Whether the error variance of a linear model changes with its predictors.
///
/// Input      columns of one length, dense; or columns of which the complete rows count
/// Failure    no predictor, lengths that differ, n not above predictors + 2, a fit that cannot be
///            had, residuals that are 0 but for rounding or alike in size -> absent
/// Reference  Koenker (1981), A note on studentizing a test for heteroscedasticity; Breusch and
///            Pagan (1979)
std::optional<BreuschPaganResult> test(std::span<const std::span<const double>> predictors,
                                       std::span<const double> outcome);
std::optional<BreuschPaganResult> test(std::span<const NumericColumn> predictors,
                                       const NumericColumn& outcome);

}  // namespace BreuschPagan

}  // namespace sorvane
