#include "SorvaneCore/Analyses/Basics/WilksTest.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::WilksTests {

FApproximation raoF(double lambda, double p, double q, double multiplier) {
    const double pq = p * q;
    const double denominator = p * p + q * q - 5.0;
    const double t = denominator > 0.0 ? std::sqrt((pq * pq - 4.0) / denominator) : 1.0;
    const double df2 = multiplier * t - (pq - 2.0) / 2.0;
    const double root = std::pow(lambda, 1.0 / t);
    return {.f = (1.0 - root) / root * df2 / pq, .df1 = pq, .df2 = df2};
}

std::vector<WilksTest> fromEachFunction(std::span<const double> squaredCorrelations,
                                        double p,
                                        double q,
                                        double n) {
    const double multiplier = n - 1.0 - (p + q + 1.0) / 2.0;
    std::vector<WilksTest> tests(squaredCorrelations.size());
    // Logarithms, as a product of many factors near 1 loses what they differ by.
    double logLambda = 0.0;
    for (std::size_t k = tests.size(); k-- > 0;) {
        logLambda += std::log1p(-squaredCorrelations[k]);
        const auto before = static_cast<double>(k);
        const FApproximation f = raoF(std::exp(logLambda), p - before, q - before, multiplier);
        const double chiSquare = std::max(-multiplier * logLambda, 0.0);
        tests[k] = {
            .fromFunction = static_cast<std::int64_t>(k) + 1,
            .wilksLambda = std::exp(logLambda),
            .approxF = f.f,
            .dfNumerator = f.df1,
            .dfDenominator = f.df2,
            .pValue = MathDistributions::fRightTailPValue(f.f, f.df1, f.df2),
            .chiSquare = chiSquare,
            .chiSquareDF = f.df1,
            .chiSquarePValue = MathDistributions::chiSquareRightTailPValue(chiSquare, f.df1)};
    }
    return tests;
}

}  // namespace sorvane::WilksTests
