#include "SorvaneCore/Analyses/AssumptionAudit/BreuschPagan.h"

#include <cmath>
#include <string>

#include "SorvaneCore/Analyses/AssumptionAudit/DenseColumns.h"
#include "SorvaneCore/Analyses/AssumptionAudit/ModelResiduals.h"
#include "SorvaneCore/Analyses/Basics/RegressionTests.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::BreuschPagan {

namespace {

/// Squared residuals over their mean; absent when they are all 0.
std::optional<std::vector<double>> scaledSquares(std::vector<double> residuals) {
    double sum = 0.0;
    for (double& value : residuals) {
        value *= value;
        sum += value;
    }
    if (!(sum > 0.0)) {
        return std::nullopt;
    }
    const double mean = sum / static_cast<double>(residuals.size());
    for (double& value : residuals) {
        value /= mean;
    }
    return residuals;
}

}  // namespace

std::optional<BreuschPaganResult> test(std::span<const std::span<const double>> predictors,
                                       std::span<const double> outcome) {
    const std::size_t n = outcome.size();
    if (predictors.empty() || !haveOneLength(predictors, n) || n <= predictors.size() + 2) {
        return std::nullopt;
    }
    auto residuals = ModelResiduals::of(predictors, outcome);
    const auto squares = residuals ? scaledSquares(std::move(*residuals)) : std::nullopt;
    if (!squares) {
        return std::nullopt;
    }
    const RegressionOptions options{.predictorNames = std::vector<std::string>(predictors.size())};
    const auto fit = RegressionTests::ordinaryLeastSquares(predictors, *squares, options);
    if (!fit || !std::isfinite(fit->rSquared)) {
        return std::nullopt;
    }
    const double total = SampleMoments::sumOfSquares(*squares, SampleMoments::mean(*squares));
    const auto df = static_cast<double>(predictors.size());
    const double koenker = static_cast<double>(n) * fit->rSquared;
    const double classic = fit->rSquared * total / 2.0;
    return BreuschPaganResult{
        .koenkerStatistic = koenker,
        .koenkerPValue = MathDistributions::chiSquareRightTailPValue(koenker, df),
        .classicStatistic = classic,
        .classicPValue = MathDistributions::chiSquareRightTailPValue(classic, df),
        .df = static_cast<std::int64_t>(predictors.size()),
        .n = static_cast<std::int64_t>(n)};
}

std::optional<BreuschPaganResult> test(std::span<const NumericColumn> predictors,
                                       const NumericColumn& outcome) {
    if (!haveOneLength(predictors, outcome.size())) {
        return std::nullopt;
    }
    const DenseColumns columns = DenseColumns::of(predictors, &outcome);
    return test(columns.predictorSpans(), columns.outcome);
}

}  // namespace sorvane::BreuschPagan
