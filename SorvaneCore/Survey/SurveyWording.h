#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Survey/SurveyCategorical.h"
#include "SorvaneCore/Survey/SurveyCorrelation.h"
#include "SorvaneCore/Survey/SurveyModel.h"

/// The sentences of estimates from a sample with a design.
namespace sorvane::SurveyWording {

inline constexpr std::string_view minimumRequired =
    "At least 2 rows with a value, and a positive sampling weight for every row";

std::string otherLength(std::size_t values, std::int64_t rows);
std::string tooFewRows(std::int64_t validN);
std::string noWeight();
std::string noUsableReplicate();
std::string beyondNumbers();
std::string notZeroOrOne(std::int64_t count);
std::string fewDegreesOfFreedom(std::int64_t df);

// Models, correlations and tables.
inline constexpr std::string_view modelMinimumRequired =
    "More rows with the outcome and all predictors than coefficients, and a positive sampling "
    "weight for every row";
inline constexpr std::string_view pairMinimumRequired =
    "At least 3 rows with both values, and a positive sampling weight for every row";
inline constexpr std::string_view tableMinimumRequired =
    "Two variables of two or more categories each, and a positive sampling weight for every row";

std::string rowsDropped(std::int64_t rows);
std::string tooFewRowsForModel(std::int64_t validN, std::int64_t coefficients);
std::string collinearPredictors();
std::string noEstimates(SurveyModelKind kind);
std::string constantOutcome(SurveyModelKind kind);
std::string tooFewLevels(std::int64_t levels);
std::string fewTestDegreesOfFreedom(std::int64_t df);
std::string noDegreesOfFreedom(std::int64_t predictors, std::int64_t designDF);
std::string fewEvents(std::int64_t rarer, std::int64_t predictors);
std::string zeroErrors();
std::string tooFewUnitsForWaldTest();
std::string noErrorForWaldTest();
std::string replicatesWithoutEstimates(std::int64_t replicates);
std::string replicatesWithoutRow(std::int64_t replicates, const std::string& row);
std::string tooFewPairs(std::int64_t validN);
std::string noVariance();
std::string tooFewCategories(std::int64_t validN);
std::string emptyContrasts();
std::string noDesignVariance();
std::string thinCells(std::int64_t cells);

/// What was found, in one sentence; empty for a blocked result.
std::string summary(const SurveyCorrelationResult& result);
std::string summary(const SurveyCategoricalResult& result);
/// What must not be claimed from an analysis of the design.
std::vector<std::string> cautions(SurveyModelKind kind);
std::vector<std::string> correlationCautions();
std::vector<std::string> tableCautions();

}  // namespace sorvane::SurveyWording
