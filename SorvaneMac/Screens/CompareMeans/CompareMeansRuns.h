#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AssumptionFinding.h"
#include "SorvaneCore/Analyses/Basics/BayesFactors.h"
#include "SorvaneCore/Analyses/Basics/GroupComparisonTests.h"
#include "SorvaneCore/Analyses/Factorial/ANCOVATests.h"
#include "SorvaneCore/Analyses/Factorial/FactorialANOVATests.h"
#include "SorvaneCore/Analyses/Factorial/RepeatedMeasuresANOVA.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonRecords.h"
#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

/// The runs of Compare Means as they are kept: what they were run on, what came out, and the
/// charts drawn from their cases.

/// The values of one group or condition in figures.
struct SampleFigures {
    std::string name;
    std::int64_t n = 0;
    std::optional<double> mean;
    std::optional<double> standardDeviation;
    std::optional<double> standardError;

    static SampleFigures of(std::string name, std::span<const double> values);
    /// Of the mean and the standard deviation.
    int decimals() const;
    /// "(M = 3.20, SD = 1.10)"
    std::string words() const;
    /// Name, n, M, SD and SE as the cells of a table.
    std::vector<std::string> cells() const;

    bool operator==(const SampleFigures&) const = default;
};
BOOST_DESCRIBE_STRUCT(SampleFigures, (), (name, n, mean, standardDeviation, standardError))

/// The heads of `SampleFigures::cells`, under the name of what they are samples of.
std::vector<std::string> sampleHeaders(std::string names);

/// The interval of a difference of means.
struct DifferenceInterval {
    double lower = 0.0;
    double upper = 0.0;
    /// In percent.
    std::int64_t confidence = 95;

    static DifferenceInterval of(const TTestResult& test,
                                 double standardError,
                                 std::int64_t confidence);
    /// "95% CI Lower" and "95% CI Upper".
    std::vector<std::string> headers() const;

    bool operator==(const DifferenceInterval&) const = default;
};
BOOST_DESCRIBE_STRUCT(DifferenceInterval, (), (lower, upper, confidence))

struct TTestRun {
    std::string outcome;
    std::string grouping;
    VarianceAssumption variances = VarianceAssumption::unequal;
    SampleFigures first;
    SampleFigures second;
    std::optional<TTestResult> result;
    std::optional<DifferenceInterval> interval;
    std::optional<BayesFactors::Result> bayesFactor;
    std::vector<AssumptionFinding> assumptions;
    std::vector<Chart> charts;

    bool operator==(const TTestRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    TTestRun,
    (),
    (outcome, grouping, variances, first, second, result, interval, bayesFactor, assumptions))

struct PairedTTestRun {
    SampleFigures before;
    SampleFigures after;
    std::optional<TTestResult> result;
    std::optional<DifferenceInterval> interval;
    std::optional<BayesFactors::Result> bayesFactor;
    std::vector<AssumptionFinding> assumptions;
    std::vector<Chart> charts;

    bool operator==(const PairedTTestRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(PairedTTestRun,
                      (),
                      (before, after, result, interval, bayesFactor, assumptions))

struct OneWayRun {
    std::optional<GroupComparisonAnalysisResult> result;
    /// Of all cases that were compared.
    GroupSummary total;
    std::optional<BayesFactors::Result> bayesFactor;
    std::vector<AssumptionFinding> assumptions;
    std::vector<Chart> charts;

    bool operator==(const OneWayRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(OneWayRun, (), (result, total, bayesFactor, assumptions))

/// One combination of the factors' levels.
struct DesignCell {
    std::vector<std::string> levels;
    SampleFigures figures;

    bool operator==(const DesignCell&) const = default;
};
BOOST_DESCRIBE_STRUCT(DesignCell, (), (levels, figures))

struct FactorialRun {
    std::string outcome;
    std::optional<FactorialANOVAResult> result;
    std::vector<DesignCell> cells;
    std::vector<Chart> charts;

    bool operator==(const FactorialRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(FactorialRun, (), (outcome, result, cells))

struct RepeatedMeasuresRun {
    std::optional<RMANOVAResult> result;
    std::vector<Chart> charts;

    bool operator==(const RepeatedMeasuresRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(RepeatedMeasuresRun, (), (result))

struct AncovaRun {
    std::string outcome;
    std::vector<std::string> covariates;
    std::optional<ANCOVAResult> result;
    /// The outcome in each group before the adjustment, in the order of the adjusted means.
    std::vector<SampleFigures> groups;
    std::vector<Chart> charts;

    bool operator==(const AncovaRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(AncovaRun, (), (outcome, covariates, result, groups))

}  // namespace sorvane
