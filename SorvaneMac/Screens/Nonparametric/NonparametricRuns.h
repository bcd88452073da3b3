#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/GroupComparisonTests.h"
#include "SorvaneCore/Analyses/Categorical/CategoricalTests.h"
#include "SorvaneCore/Analyses/Categorical/FisherExactTests.h"
#include "SorvaneCore/Analyses/Categorical/GoodnessOfFit.h"
#include "SorvaneCore/Analyses/Categorical/McNemarTests.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonRecords.h"
#include "SorvaneCore/Analyses/NonparametricTests.h"
#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

/// The runs of Nonparametric & Categorical as they are kept: what they were run on, what came out,
/// and the charts drawn from their cases.

/// A group or condition as rank tests describe it.
struct OrderFigures {
    std::string name;
    std::int64_t n = 0;
    std::optional<double> median;
    std::optional<double> firstQuartile;
    std::optional<double> thirdQuartile;

    static OrderFigures of(std::string name, std::span<const double> values);
    int decimals() const;
    /// Name, n, median and quartiles as the cells of a table.
    std::vector<std::string> cells() const;
    /// "(Mdn = 3.00)"
    std::string words() const;

    bool operator==(const OrderFigures&) const = default;
};
BOOST_DESCRIBE_STRUCT(OrderFigures, (), (name, n, median, firstQuartile, thirdQuartile))

/// The heads of `OrderFigures::cells`.
std::vector<std::string> orderHeaders(std::string names);

struct MannWhitneyRun {
    std::string outcome;
    std::string grouping;
    OrderFigures first;
    OrderFigures second;
    std::optional<MannWhitneyResult> result;
    std::vector<Chart> charts;

    bool operator==(const MannWhitneyRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(MannWhitneyRun, (), (outcome, grouping, first, second, result))

struct WilcoxonRun {
    OrderFigures before;
    OrderFigures after;
    std::optional<SignedRankResult> result;
    std::vector<Chart> charts;

    bool operator==(const WilcoxonRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(WilcoxonRun, (), (before, after, result))

struct KruskalWallisRun {
    std::string outcome;
    std::string grouping;
    std::vector<OrderFigures> groups;
    std::optional<ANOVAResult> result;
    /// Dunn's test of each pair.
    std::vector<PairwiseComparisonResult> pairs;
    std::vector<Chart> charts;

    bool operator==(const KruskalWallisRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(KruskalWallisRun, (), (outcome, grouping, groups, result, pairs))

struct FriedmanRun {
    std::vector<OrderFigures> conditions;
    std::optional<FriedmanResult> result;
    std::vector<Chart> charts;

    bool operator==(const FriedmanRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(FriedmanRun, (), (conditions, result))

struct IndependenceRun {
    std::string rowName;
    std::string columnName;
    std::optional<ChiSquareResult> result;

    bool operator==(const IndependenceRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(IndependenceRun, (), (rowName, columnName, result))

struct GoodnessOfFitRun {
    std::string category;
    std::optional<GoodnessOfFitResult> result;

    bool operator==(const GoodnessOfFitRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(GoodnessOfFitRun, (), (category, result))

struct FisherRun {
    std::string rowName;
    std::string columnName;
    std::vector<std::string> rowLabels;
    std::vector<std::string> columnLabels;
    std::optional<FisherExactResult> result;

    bool operator==(const FisherRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(FisherRun, (), (rowName, columnName, rowLabels, columnLabels, result))

struct McNemarRun {
    std::string beforeName;
    std::string afterName;
    /// Of both measurements.
    std::vector<std::string> labels;
    std::optional<McNemarResult> result;

    bool operator==(const McNemarRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(McNemarRun, (), (beforeName, afterName, labels, result))

}  // namespace sorvane
