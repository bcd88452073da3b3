#pragma once

#include <algorithm>
#include <boost/describe/enum.hpp>
#include <cmath>

namespace sorvane {

/// Outcomes of 0 and 1 under the logit link, counts under the log link.
enum class LinkedFamily { logistic, poisson };
BOOST_DESCRIBE_ENUM(LinkedFamily, logistic, poisson)

/// What the arithmetic of both is held to.
namespace linked_bounds {

inline constexpr double largestPredictor = 30.0;
inline constexpr double smallestShare = 1e-12;
/// The linear predictor within which neither bound is felt: ln(1e12) less a little.
inline constexpr double unfelt = 27.6;

}  // namespace linked_bounds

/// The log mass of one outcome less the most it may be, with its derivatives in the linear
/// predictor. As the log mass of a large count is, it would be rounded to more than a search sees.
struct LinkedMass {
    double logMass = 0.0;
    double mean = 0.0;
    /// The negative second derivative.
    double weight = 0.0;

    /// Where a count is likeliest; of no use to shares and to a count of 0, likeliest far out.
    static double peakOf(LinkedFamily family, double outcome) {
        return family == LinkedFamily::poisson && outcome > 0.0 ? std::log(outcome) : 0.0;
    }

    static LinkedMass of(LinkedFamily family, double outcome, double peak, double predictor) {
        using namespace linked_bounds;  // NOLINT(google-build-using-namespace)
        const double eta = std::clamp(predictor, -largestPredictor, largestPredictor);
        const double rate = std::exp(eta);
        if (family == LinkedFamily::poisson) {
            return {outcome * (eta - peak) - (rate - outcome), rate, rate};
        }
        const double share = std::clamp(rate / (1.0 + rate), smallestShare, 1.0 - smallestShare);
        // 1 - share is formed apart, as it keeps its digits where the share is next to 1.
        const double rest = std::clamp(1.0 / (1.0 + rate), smallestShare, 1.0 - smallestShare);
        return {outcome > 0.0 ? std::log(share) : std::log(rest), share, share * rest};
    }
};

}  // namespace sorvane
