#include "SorvaneCore/Analyses/Basics/MeanContrast.h"

#include <cmath>

namespace sorvane {

double satterthwaiteDf(const GroupMoments& a, const GroupMoments& b) {
    const double shareA = a.squaredError();
    const double shareB = b.squaredError();
    const double sum = shareA + shareB;
    return sum * sum / (shareA * shareA / (a.n - 1.0) + shareB * shareB / (b.n - 1.0));
}

std::optional<MeanContrast> MeanContrast::of(const GroupMoments& a,
                                             const GroupMoments& b,
                                             VarianceAssumption variances) {
    const double pooledDf = a.n + b.n - 2.0;
    const double pooledVariance = (a.sumOfSquares + b.sumOfSquares) / pooledDf;
    MeanContrast contrast{.difference = a.mean - b.mean};
    contrast.cohensD = contrast.difference / std::sqrt(pooledVariance);
    if (variances == VarianceAssumption::equal) {
        contrast.standardError = std::sqrt(pooledVariance * (1.0 / a.n + 1.0 / b.n));
        contrast.df = pooledDf;
    } else {
        contrast.standardError = std::sqrt(a.squaredError() + b.squaredError());
        contrast.df = satterthwaiteDf(a, b);
    }
    if (!(contrast.standardError > 0.0) || !std::isfinite(contrast.df)) {
        return std::nullopt;
    }
    return contrast;
}

}  // namespace sorvane
