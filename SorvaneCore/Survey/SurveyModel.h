#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Survey/WeightedEstimators.h"

namespace sorvane {

enum class SurveyModelKind { linear, logistic, poisson, ordinal };
BOOST_DESCRIBE_ENUM(SurveyModelKind, linear, logistic, poisson, ordinal)
std::string_view displayName(SurveyModelKind kind);

/// A coefficient of a model for the population, tested on the design's degrees of freedom.
struct SurveyCoefficient {
    std::string name{};
    double estimate = 0.0;
    double standardError = 0.0;
    double t = 0.0;
    double pValue = 1.0;
    double lowerBound = 0.0;
    double upperBound = 0.0;
    /// The odds or rate ratio with its bounds; absent in linear models and for thresholds.
    std::optional<double> ratio{};
    std::optional<double> ratioLowerBound{};
    std::optional<double> ratioUpperBound{};

    bool operator==(const SurveyCoefficient&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyCoefficient,
                      (),
                      (name,
                       estimate,
                       standardError,
                       t,
                       pValue,
                       lowerBound,
                       upperBound,
                       ratio,
                       ratioLowerBound,
                       ratioUpperBound))

/// A regression for the population that the sample stands for.
struct SurveyModelResult {
    SurveyModelKind model = SurveyModelKind::linear;
    std::string outcomeName{};
    /// "Intercept" and the predictors; of ordinal models the predictors alone. None where blocked.
    std::vector<SurveyCoefficient> coefficients{};
    /// Of ordinal models: "low|middle" and so on.
    std::vector<SurveyCoefficient> thresholds{};
    /// The joint test of all predictors; NaN without predictors or degrees of freedom, or where a
    /// predictor or a combination of predictors has no error, be it that the design compares too
    /// few units.
    double waldF = std::numeric_limits<double>::quiet_NaN();
    double waldDFNumerator = std::numeric_limits<double>::quiet_NaN();
    double waldDFDenominator = std::numeric_limits<double>::quiet_NaN();
    double waldPValue = std::numeric_limits<double>::quiet_NaN();
    /// Of linear models, by the weights.
    std::optional<double> rSquared{};
    /// Of linear models: the residual standard deviation in the population.
    std::optional<double> residualStandardDeviation{};
    /// Strata and primary sampling units of the rows that count.
    std::int64_t stratumCount = 0;
    std::int64_t psuCount = 0;
    std::int64_t designDegreesOfFreedom = 1;
    /// Of the tests: those of the design less the predictors. Below 1 nothing can be tested.
    std::int64_t degreesOfFreedom = 1;
    double confidenceLevel = 0.95;
    DesignVarianceMethod varianceMethod = DesignVarianceMethod::naiveWeighted;
    double sumOfWeights = 0.0;
    /// Cases of equal weight that would tell as much (Kish).
    std::optional<double> effectiveSampleSize{};
    /// Standard deviations of the predictors in the population.
    std::vector<double> predictorDeviations{};
    /// Rows with a 1, of logistic models.
    std::optional<std::int64_t> events{};
    std::int64_t validN = 0;
    std::int64_t totalN = 0;
    std::int64_t predictorCount = 0;
    /// Newton steps; 0 for linear models.
    std::int64_t iterations = 0;
    AnalysisReadiness readiness{};

    bool operator==(const SurveyModelResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyModelResult,
                      (),
                      (model,
                       outcomeName,
                       coefficients,
                       thresholds,
                       waldF,
                       waldDFNumerator,
                       waldDFDenominator,
                       waldPValue,
                       rSquared,
                       residualStandardDeviation,
                       stratumCount,
                       psuCount,
                       designDegreesOfFreedom,
                       degreesOfFreedom,
                       confidenceLevel,
                       varianceMethod,
                       sumOfWeights,
                       effectiveSampleSize,
                       predictorDeviations,
                       events,
                       validN,
                       totalN,
                       predictorCount,
                       iterations,
                       readiness))

struct SurveyModelOptions {
    /// One name per predictor.
    std::vector<std::string> predictorNames{};
    std::string outcomeName{};
};

}  // namespace sorvane
