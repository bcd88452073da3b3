#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>

namespace sorvane {

/// One number of classes among several that are compared.
struct LatentSweepRow {
    std::int64_t k = 0;
    double logLik = 0.0;
    double aic = 0.0;
    double bic = 0.0;
    double entropy = 0.0;
    bool converged = false;

    bool operator==(const LatentSweepRow&) const = default;
};
BOOST_DESCRIBE_STRUCT(LatentSweepRow, (), (k, logLik, aic, bic, entropy, converged))

}  // namespace sorvane
