#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Analyses/Basics/ScaleScoring.h"
#include "SorvaneCore/SorvaneEngine.h"

namespace sorvane {

struct ReliabilityItemStatistic {
    std::string itemName{};
    /// Over the prepared values, filled ones included.
    std::optional<double> mean{};
    std::optional<double> standardDeviation{};
    /// Absent entries among all input rows.
    std::int64_t missingCount = 0;
    std::optional<double> correctedItemTotalCorrelation{};
    std::optional<double> alphaIfDeleted{};

    bool operator==(const ReliabilityItemStatistic&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReliabilityItemStatistic,
                      (),
                      (itemName,
                       mean,
                       standardDeviation,
                       missingCount,
                       correctedItemTotalCorrelation,
                       alphaIfDeleted))

/// How a reliability analysis was made.
struct ReliabilityMethodMetadata {
    std::string analysisType = "Cronbach alpha";
    std::string formula =
        "raw-score alpha from sample item variances and sample total-score variance";
    ReliabilityMissingDataRule missingDataRule = ReliabilityMissingDataRule::listwiseDeletion;
    ScaleScoreMethod scaleScoreMethod = ScaleScoreMethod::mean;
    double minimumItemCompletion = 0.8;
    std::int64_t inputRows = 0;
    std::int64_t casesUsed = 0;
    std::int64_t itemCount = 0;
    std::string engineVersion{SorvaneEngine::version};
    std::vector<std::string> reportingNotes = {
        "Cronbach alpha estimates internal consistency, not validity.",
        "Item diagnostics use corrected item-total correlations and alpha-if-deleted."};

    bool operator==(const ReliabilityMethodMetadata&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReliabilityMethodMetadata,
                      (),
                      (analysisType,
                       formula,
                       missingDataRule,
                       scaleScoreMethod,
                       minimumItemCompletion,
                       inputRows,
                       casesUsed,
                       itemCount,
                       engineVersion,
                       reportingNotes))

struct ReliabilityResult {
    std::string constructName{};
    std::vector<std::string> itemNames{};
    std::int64_t casesUsed = 0;
    ReliabilityMissingDataRule missingDataRule = ReliabilityMissingDataRule::listwiseDeletion;
    std::optional<double> alpha{};
    std::optional<double> averageInterItemCorrelation{};
    std::optional<double> scaleScoreMean{};
    std::optional<double> scaleScoreStandardDeviation{};
    std::vector<ReliabilityItemStatistic> itemStatistics{};
    /// One row per item; exactly 1 on the diagonal.
    std::vector<std::vector<std::optional<double>>> interItemCorrelationMatrix{};
    std::vector<std::string> warnings{};
    std::string interpretation{};
    std::string recommendedAction{};
    std::optional<AnalysisReadiness> readiness{};
    std::optional<ReliabilityMethodMetadata> methodMetadata{};

    bool operator==(const ReliabilityResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReliabilityResult,
                      (),
                      (constructName,
                       itemNames,
                       casesUsed,
                       missingDataRule,
                       alpha,
                       averageInterItemCorrelation,
                       scaleScoreMean,
                       scaleScoreStandardDeviation,
                       itemStatistics,
                       interItemCorrelationMatrix,
                       warnings,
                       interpretation,
                       recommendedAction,
                       readiness,
                       methodMetadata))

}  // namespace sorvane
