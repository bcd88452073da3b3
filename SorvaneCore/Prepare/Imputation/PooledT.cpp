#include "SorvaneCore/Prepare/Imputation/PooledT.h"

#include <cmath>

#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NormalCritical.h"

namespace sorvane::PooledT {

namespace {

constexpr double nearlyNormal = 1e6;

/// How far t at `df` lies from the normal deviate `x` of the same tail, as a share of it.
double firstTerm(double x, double df) {
    return (x * x + 1.0) / (4.0 * df);
}

}  // namespace

double critical(double twoTailedAlpha, double df) {
    if (!(df > nearlyNormal)) {
        return MathDistributions::studentTCritical(twoTailedAlpha, df);
    }
    const double z = normalCritical(twoTailedAlpha, NormalCriticalSetting::wide);
    return z * (1.0 + firstTerm(z, df));
}

double pValue(double t, double df) {
    if (!(df > nearlyNormal)) {
        return MathDistributions::studentTPValue(t, df);
    }
    const double z = std::abs(t) * (1.0 - firstTerm(t, df));
    // 1 + erf: twice the normal distribution function at z.
    return 2.0 - (1.0 + std::erf(z / std::sqrt(2.0)));
}

}  // namespace sorvane::PooledT
