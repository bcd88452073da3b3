#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <vector>

namespace sorvane {

struct VarimaxOptions {
    /// Passes over all pairs of factors.
    std::int64_t maxIterations = 100;
    /// The smallest angle, in radians, that is still turned.
    double tolerance = 1e-9;

    bool operator==(const VarimaxOptions&) const = default;
};
BOOST_DESCRIBE_STRUCT(VarimaxOptions, (), (maxIterations, tolerance))

/// Loadings turned so that each item loads highly on as few factors as may be.
///
/// Input      one row per item, all of one width
/// Method     Kaiser's varimax: rows brought to length 1, pairs of factors turned by the angle that
///            maximises the criterion until a pass turns none, rows brought back to their length.
///            Each factor's loading of largest absolute value, the first of equals, is made
///            positive
/// Returns    the input as it is where there are no rows or fewer than two factors
/// Cost       O(items factors^2) a pass
/// Reference  Kaiser (1958), The varimax criterion for analytic rotation in factor analysis
std::vector<std::vector<double>> varimaxRotation(std::vector<std::vector<double>> loadings,
                                                 const VarimaxOptions& options = {});

}  // namespace sorvane
