#pragma once

#include <boost/describe/class.hpp>
#include <cmath>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

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

/// A row for each number of classes whose fit has a likelihood.
///
/// Input      `fit`: takes the number and whom to tell the share of this fit that is done, and gives
///            an optional result; `progress`: of the whole, may be empty
template <typename Fit>
std::vector<LatentSweepRow> latentSweep(std::int64_t fewest,
                                        std::int64_t most,
                                        const std::function<void(double)>& progress,
                                        Fit&& fit) {
    std::vector<LatentSweepRow> rows;
    const auto counts = static_cast<double>(most - fewest + 1);
    for (std::int64_t k = fewest; k <= most; ++k) {
        std::function<void(double)> share;
        if (progress) {
            share = [&progress, counts, done = static_cast<double>(k - fewest)](double ofThis) {
                progress((done + ofThis) / counts);
            };
        }
        const auto result = fit(k, std::move(share));
        if (result && std::isfinite(result->logLikelihood)) {
            rows.push_back({.k = k,
                            .logLik = result->logLikelihood,
                            .aic = result->aic,
                            .bic = result->bic,
                            .entropy = result->entropy,
                            .converged = result->converged});
        }
    }
    return rows;
}

}  // namespace sorvane
