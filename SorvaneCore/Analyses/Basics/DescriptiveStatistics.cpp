#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string_view>
#include <utility>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Analyses/Basics/ValueCounts.h"
#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::DescriptiveStatistics {

namespace {

constexpr std::int64_t fewValidValues = 30;

std::optional<MeanInterval> interval(double mean, double standardError, double n, double level) {
    if (!(level > 0.0 && level < 1.0)) {
        return std::nullopt;
    }
    const double t = MathDistributions::studentTCritical(1.0 - level, n - 1.0);
    if (!std::isfinite(t)) {
        return std::nullopt;
    }
    return MeanInterval{.lower = mean - t * standardError, .upper = mean + t * standardError};
}

Quartiles quartiles(const ValueCounts& sample) {
    const std::uint64_t half = sample.total() / 2;
    return {.q1 = sample.medianOf(0, half), .q3 = sample.medianOf(sample.total() - half, half)};
}

std::optional<double> skewness(const ValueCounts& sample, double mean, double deviation) {
    const auto n = static_cast<double>(sample.total());
    if (sample.total() < 3 || !(deviation > 0.0) || std::isinf(deviation)) {
        return std::nullopt;
    }
    return n / ((n - 1.0) * (n - 2.0)) * sample.sumOfCubes(mean, deviation);
}

std::optional<std::vector<double>> modes(const ValueCounts& sample) {
    const std::span<const std::uint64_t> counts = sample.counts();
    const std::uint64_t highest = counts.empty() ? 0 : *std::ranges::max_element(counts);
    if (highest < 2) {
        return std::nullopt;
    }
    std::vector<double> result;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] == highest) {
            result.push_back(sample.values()[i]);
        }
    }
    return result;
}

AnalysisReadiness readiness(std::int64_t totalN, std::int64_t validN) {
    std::vector<AnalysisReadinessIssue> issues;
    if (validN == 0) {
        issues.push_back(
            AnalysisReadinessIssue::blocked("No non-missing numeric values are available."));
    } else if (validN == 1) {
        issues.push_back(AnalysisReadinessIssue::caution(
            "Only one valid value is available; spread and confidence intervals cannot be "
            "estimated."));
    } else if (validN < fewValidValues) {
        issues.push_back(AnalysisReadinessIssue::caution(
            "Valid N is below 30; treat descriptive shape checks as exploratory."));
    }
    if (totalN > validN) {
        issues.push_back(AnalysisReadinessIssue::caution(NumberText::integer(totalN - validN) +
                                                         " values were excluded as missing."));
    }
    return AnalysisReadiness::of("at least one numeric value; at least two for spread estimates",
                                 totalN, validN, std::move(issues));
}

void fillSpread(DescriptiveSummary& summary, const ValueCounts& sample, double level) {
    const auto n = static_cast<double>(sample.total());
    const double mean = *summary.mean;
    const double variance = sample.sumOfSquares(mean) / (n - 1.0);
    const double deviation = std::sqrt(variance);
    summary.variance = variance;
    summary.standardDeviation = deviation;
    summary.standardError = deviation / std::sqrt(n);
    const Quartiles halves = quartiles(sample);
    summary.firstQuartile = halves.q1;
    summary.thirdQuartile = halves.q3;
    summary.interquartileRange = halves.q3 - halves.q1;
    summary.skewness = skewness(sample, mean, deviation);
    if (const auto bounds = interval(mean, *summary.standardError, n, level)) {
        summary.confidenceIntervalLower = bounds->lower;
        summary.confidenceIntervalUpper = bounds->upper;
    }
}

DescriptiveSummary summaryOf(const ValueCounts& sample,
                             std::size_t totalRows,
                             const DescriptiveOptions& options) {
    DescriptiveSummary summary{.variableName = options.variableName,
                               .totalN = static_cast<std::int64_t>(totalRows),
                               .validN = static_cast<std::int64_t>(sample.total()),
                               .methodMetadata = {.variableName = options.variableName,
                                                  .confidenceLevel = options.confidenceLevel}};
    summary.missingN = summary.totalN - summary.validN;
    summary.readiness = readiness(summary.totalN, summary.validN);
    if (sample.total() == 0) {
        return summary;
    }
    summary.mean = sample.mean();
    summary.median = sample.medianOf(0, sample.total());
    summary.minimum = sample.values().front();
    summary.maximum = sample.values().back();
    summary.modes = modes(sample);
    if (sample.total() >= 2) {
        fillSpread(summary, sample, options.confidenceLevel);
    }
    return summary;
}

bool belowWithNaNLast(double a, double b) {
    return a < b || (std::isnan(b) && !std::isnan(a));
}

/// Texts with their counts, each text once, in the order the table shows.
std::vector<FrequencyTableEntry> tabulated(
    const std::map<std::string_view, std::int64_t>& countsByText) {
    std::vector<FrequencyTableEntry> table;
    table.reserve(countsByText.size());
    for (const auto& [text, count] : countsByText) {
        table.push_back({.value = std::string(text), .count = count});
    }
    std::ranges::stable_sort(table, std::ranges::greater{}, &FrequencyTableEntry::count);
    return table;
}

}  // namespace

std::optional<double> mean(std::span<const double> values) {
    if (values.empty()) {
        return std::nullopt;
    }
    return SampleMoments::mean(values);
}

std::optional<double> median(std::span<const double> values) {
    if (values.empty()) {
        return std::nullopt;
    }
    std::vector<double> copy(values.begin(), values.end());
    const auto middle = copy.begin() + static_cast<std::ptrdiff_t>(copy.size() / 2);
    std::ranges::nth_element(copy, middle, belowWithNaNLast);
    if (copy.size() % 2 == 1) {
        return *middle;
    }
    return (*std::max_element(copy.begin(), middle, belowWithNaNLast) + *middle) / 2.0;
}

std::optional<double> variance(std::span<const double> values, VarianceDenominator denominator) {
    const std::size_t lost = denominator == VarianceDenominator::sample ? 1 : 0;
    if (values.size() < lost + 1) {
        return std::nullopt;
    }
    return SampleMoments::sumOfSquares(values, SampleMoments::mean(values)) /
           static_cast<double>(values.size() - lost);
}

std::optional<double> standardDeviation(std::span<const double> values,
                                        VarianceDenominator denominator) {
    const std::optional<double> square = variance(values, denominator);
    return square ? std::optional(std::sqrt(*square)) : std::nullopt;
}

std::optional<double> standardError(std::span<const double> values) {
    const std::optional<double> deviation = standardDeviation(values);
    return deviation ? std::optional(*deviation / std::sqrt(static_cast<double>(values.size())))
                     : std::nullopt;
}

std::optional<MeanInterval> confidenceIntervalForMean(std::span<const double> values,
                                                      double confidenceLevel) {
    const std::optional<double> error = standardError(values);
    if (!error) {
        return std::nullopt;
    }
    return interval(SampleMoments::mean(values), *error, static_cast<double>(values.size()),
                    confidenceLevel);
}

std::optional<Quartiles> quartiles(std::span<const double> values) {
    if (values.size() < 2) {
        return std::nullopt;
    }
    return quartiles(ValueCounts(values));
}

std::optional<double> skewness(std::span<const double> values) {
    const std::optional<double> deviation = standardDeviation(values);
    if (!deviation) {
        return std::nullopt;
    }
    return skewness(ValueCounts(values), SampleMoments::mean(values), *deviation);
}

std::optional<std::vector<double>> mode(std::span<const double> values) {
    return modes(ValueCounts(values));
}

std::vector<FrequencyTableEntry> frequencyTable(std::span<const std::string> cells) {
    std::map<std::string_view, std::int64_t> countsByText;
    for (const std::string& cell : cells) {
        if (!MissingValue::isMissing(cell)) {
            ++countsByText[cell];
        }
    }
    return tabulated(countsByText);
}

std::vector<FrequencyTableEntry> frequencyTable(const TextColumn& column) {
    std::map<std::string_view, std::int64_t> countsByText;
    const std::vector<std::uint64_t> counts = column.levelCounts();
    for (std::size_t level = 0; level < column.levelCount(); ++level) {
        if (counts[level] > 0 && !MissingValue::isMissing(column.level(level))) {
            countsByText[column.level(level)] += static_cast<std::int64_t>(counts[level]);
        }
    }
    return tabulated(countsByText);
}

DescriptiveSummary summary(std::span<const double> values, const DescriptiveOptions& options) {
    return summaryOf(ValueCounts(values), values.size(), options);
}

DescriptiveSummary summary(std::span<const std::optional<double>> rows,
                           const DescriptiveOptions& options) {
    std::vector<double> present;
    present.reserve(rows.size());
    for (const std::optional<double>& row : rows) {
        if (row) {
            present.push_back(*row);
        }
    }
    return summaryOf(ValueCounts(present), rows.size(), options);
}

DescriptiveSummary summary(const NumericColumn& column, const DescriptiveOptions& options) {
    return summaryOf(ValueCounts(column), column.size(), options);
}

std::vector<DescriptiveSummary> summaries(std::span<const NumericColumn> columns,
                                          std::span<const std::string> variableNames,
                                          double confidenceLevel) {
    std::vector<DescriptiveSummary> result;
    result.reserve(columns.size());
    for (std::size_t j = 0; j < columns.size(); ++j) {
        DescriptiveOptions options{.variableName = std::nullopt,
                                   .confidenceLevel = confidenceLevel};
        if (j < variableNames.size()) {
            options.variableName = variableNames[j];
        }
        result.push_back(summary(columns[j], options));
    }
    return result;
}

}  // namespace sorvane::DescriptiveStatistics
