#pragma once

#include <cstdint>
#include <string>

/// What the generalized regressions tell their users.
namespace sorvane::GeneralizedRegressionWording {

inline constexpr const char* logisticMinimum =
    "a converged fit with both outcome levels present, ideally 10+ events per predictor";
inline constexpr const char* poissonMinimum =
    "a converged fit on count data, ideally 10+ cases per predictor with no strong overdispersion";
inline constexpr const char* ordinalMinimum =
    "a converged fit, three or more ordered outcome levels each present, and more cases than "
    "parameters";

// Of all three.
std::string tooFewCases(std::int64_t n, std::int64_t coefficients);
std::string rowsDropped(std::int64_t dropped);

std::string oneLevelOnly(std::int64_t events);
std::string separated();
std::string logisticNonFinite();
std::string logisticSingular();
std::string logisticBudget();
std::string fewEvents(std::int64_t rarer, std::int64_t predictors);

std::string poissonDiverged();
std::string poissonNonFinite();
std::string poissonSingular();
std::string poissonBudget();
std::string fewCasesPerPredictor(std::int64_t n, std::int64_t predictors);
std::string overdispersed(double dispersion);

std::string tooFewLevels(std::int64_t levels);
std::string ordinalNonFinite();
std::string ordinalSingular();
std::string ordinalBudget();
std::string thresholdsDisordered();
std::string sparseLevel(std::int64_t cases);
std::string fewCasesPerParameter(std::int64_t n, std::int64_t parameters);
std::string proportionalOddsAssumed();

}  // namespace sorvane::GeneralizedRegressionWording
