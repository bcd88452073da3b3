#include "SorvaneCore/Prepare/Imputation/PooledT.h"

#include <cmath>

#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NormalCritical.h"

namespace sorvane::PooledT {

namespace {

constexpr double nearlyNormal = 1e6;

/// The normal deviate of the same tail. It agrees with the expansion to the first term in 1/df, but
/// grows with t where t is large beside the root of df and the expansion turns.
double normalDeviate(double t, double df) {
    return std::isinf(df) ? t : (1.0 - 0.25 / df) * std::sqrt(df * std::log1p(t / df * t));
}

}  // namespace

double critical(double twoTailedAlpha, double df) {
    if (!(df > nearlyNormal)) {
        return MathDistributions::studentTCritical(twoTailedAlpha, df);
    }
    const double z = normalCritical(twoTailedAlpha, NormalCriticalSetting::wide);
    return z * (1.0 + (z * z + 1.0) / (4.0 * df));
}

double pValue(double t, double df) {
    if (!(df > nearlyNormal)) {
        return MathDistributions::studentTPValue(t, df);
    }
    const double z = normalDeviate(std::abs(t), df);
    // 1 + erf: twice the normal distribution function at z.
    return 2.0 - (1.0 + std::erf(z / std::sqrt(2.0)));
}

}  // namespace sorvane::PooledT
