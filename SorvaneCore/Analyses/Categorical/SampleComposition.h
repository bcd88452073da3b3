#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// One category of a sample beside its share of the population.
struct CompositionCategory {
    std::string name{};
    std::int64_t count = 0;
    double samplePercent = 0.0;
    double benchmarkPercent = 0.0;
    /// The sample less the benchmark, in percentage points.
    double difference = 0.0;

    bool operator==(const CompositionCategory&) const = default;
};
BOOST_DESCRIBE_STRUCT(CompositionCategory,
                      (),
                      (name, count, samplePercent, benchmarkPercent, difference))

struct CompositionResult {
    std::vector<CompositionCategory> categories{};
    /// NaN where the comparison is blocked.
    double statistic = 0.0;
    std::int64_t degreesOfFreedom = 0;
    double pValue = 0.0;
    AnalysisReadiness readiness{};

    bool operator==(const CompositionResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(CompositionResult,
                      (),
                      (categories, statistic, degreesOfFreedom, pValue, readiness))

/// A sample's categories against known shares of the population.
namespace SampleComposition {

/// The chi-square goodness of fit of the sample to the benchmarks.
///
/// Input      missing cells are left out; a benchmark for each category, in percent or as any
///            shares, which are divided by their sum. Benchmarks of categories that nobody in the
///            sample has count too
/// Returns    categories by label
/// Failure    a category without a benchmark above 0, fewer than two categories, or no cells ->
///            blocked, statistic and p NaN
CompositionResult compare(const TextColumn& categories,
                          const std::map<std::string, double>& benchmarks);

}  // namespace SampleComposition

}  // namespace sorvane
