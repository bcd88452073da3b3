#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/DescriptiveSummary.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// The denominator of a variance: n - 1, or n.
enum class VarianceDenominator { sample, population };
BOOST_DESCRIBE_ENUM(VarianceDenominator, sample, population)

struct MeanInterval {
    double lower = 0.0;
    double upper = 0.0;

    bool operator==(const MeanInterval&) const = default;
};
BOOST_DESCRIBE_STRUCT(MeanInterval, (), (lower, upper))

struct Quartiles {
    double q1 = 0.0;
    double q3 = 0.0;

    bool operator==(const Quartiles&) const = default;
};
BOOST_DESCRIBE_STRUCT(Quartiles, (), (q1, q3))

/// One text of a column and how often it occurs.
struct FrequencyTableEntry {
    std::string value{};
    std::int64_t count = 0;

    bool operator==(const FrequencyTableEntry&) const = default;
};
BOOST_DESCRIBE_STRUCT(FrequencyTableEntry, (), (value, count))

struct DescriptiveOptions {
    /// Carried into the summary.
    std::optional<std::string> variableName{};
    /// Of the interval for the mean; outside (0, 1) there is no interval.
    double confidenceLevel = 0.95;
};
BOOST_DESCRIBE_STRUCT(DescriptiveOptions, (), (variableName, confidenceLevel))

/// The mean, spread and shape of lists of values. A statistic that is undefined is absent.
///
/// Accuracy   deviations are taken from a corrected mean, so that a large offset costs no digits
///            and values that are equal but for rounding have a variance of exactly 0
namespace DescriptiveStatistics {

std::optional<double> mean(std::span<const double> values);

/// The middle value, or the mean of the two middle values.      Cost O(n)
std::optional<double> median(std::span<const double> values);

/// Needs two values for the sample variance, one for the population variance.
std::optional<double> variance(std::span<const double> values,
                               VarianceDenominator denominator = VarianceDenominator::sample);

std::optional<double> standardDeviation(
    std::span<const double> values, VarianceDenominator denominator = VarianceDenominator::sample);

/// s / sqrt(n), of at least two values.
std::optional<double> standardError(std::span<const double> values);

/// Mean -+ t s / sqrt(n), Student's t with n - 1 degrees of freedom.
///
/// Failure    fewer than two values, a level outside (0, 1), a t that is not finite -> absent
std::optional<MeanInterval> confidenceIntervalForMean(std::span<const double> values,
                                                      double confidenceLevel = 0.95);

/// The medians of the lower and upper floor(n/2) sorted values, of at least two values.
std::optional<Quartiles> quartiles(std::span<const double> values);

/// Adjusted Fisher-Pearson: n / ((n-1)(n-2)) times the sum of ((x - mean) / s)^3.
///
/// Failure    fewer than three values, or s not above 0 -> absent
std::optional<double> skewness(std::span<const double> values);

/// All values of the highest count, ascending; absent when no value occurs twice.
std::optional<std::vector<double>> mode(std::span<const double> values);

/// How often each text occurs, missing markers left out: by count descending, then by text.
std::vector<FrequencyTableEntry> frequencyTable(std::span<const std::string> cells);
std::vector<FrequencyTableEntry> frequencyTable(const TextColumn& column);

/// All of the above for one variable, with what the user must be told about it.
///
/// Input      values all present; or one entry per row, absent where the cell is missing
/// Method     on the distinct values and their counts, whatever the form, so that all forms give
///            the same bits
/// Cost       O(n + d log d) for a column with codes and d levels, else one sort of the values
DescriptiveSummary summary(std::span<const double> values, const DescriptiveOptions& options = {});
DescriptiveSummary summary(std::span<const std::optional<double>> rows,
                           const DescriptiveOptions& options = {});
DescriptiveSummary summary(const NumericColumn& column, const DescriptiveOptions& options = {});

/// The summary of each column, named in order; a column beyond the names has none.
std::vector<DescriptiveSummary> summaries(std::span<const NumericColumn> columns,
                                          std::span<const std::string> variableNames,
                                          double confidenceLevel = 0.95);

}  // namespace DescriptiveStatistics

}  // namespace sorvane
