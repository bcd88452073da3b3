#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/SorvaneEngine.h"

namespace sorvane {

/// How a descriptive summary was made.
struct DescriptiveMethodMetadata {
    std::optional<std::string> variableName{};
    std::string missingDataRule = "available-case deletion";
    std::string varianceMethod = "sample variance with n - 1 denominator";
    double confidenceLevel = 0.95;
    std::string intervalMethod = "Student t confidence interval for the mean";
    std::string engineVersion{SorvaneEngine::version};

    bool operator==(const DescriptiveMethodMetadata&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    DescriptiveMethodMetadata,
    (),
    (variableName, missingDataRule, varianceMethod, confidenceLevel, intervalMethod, engineVersion))

/// The summary of one variable; a statistic is absent where it is undefined.
struct DescriptiveSummary {
    std::optional<std::string> variableName{};
    std::int64_t totalN = 0;
    std::int64_t validN = 0;
    std::int64_t missingN = 0;
    std::optional<double> mean{};
    std::optional<double> median{};
    std::optional<double> variance{};
    std::optional<double> standardDeviation{};
    std::optional<double> standardError{};
    std::optional<double> minimum{};
    std::optional<double> maximum{};
    /// Medians of the lower and upper halves, the median of an odd list left out of both.
    std::optional<double> firstQuartile{};
    std::optional<double> thirdQuartile{};
    std::optional<double> interquartileRange{};
    /// Adjusted Fisher-Pearson.
    std::optional<double> skewness{};
    /// All values of the highest count, ascending; absent when no value occurs twice.
    std::optional<std::vector<double>> modes{};
    std::optional<double> confidenceIntervalLower{};
    std::optional<double> confidenceIntervalUpper{};
    AnalysisReadiness readiness{};
    DescriptiveMethodMetadata methodMetadata{};

    bool operator==(const DescriptiveSummary&) const = default;
};
BOOST_DESCRIBE_STRUCT(DescriptiveSummary,
                      (),
                      (variableName,
                       totalN,
                       validN,
                       missingN,
                       mean,
                       median,
                       variance,
                       standardDeviation,
                       standardError,
                       minimum,
                       maximum,
                       firstQuartile,
                       thirdQuartile,
                       interquartileRange,
                       skewness,
                       modes,
                       confidenceIntervalLower,
                       confidenceIntervalUpper,
                       readiness,
                       methodMetadata))

}  // namespace sorvane
