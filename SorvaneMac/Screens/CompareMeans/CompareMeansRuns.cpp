#include "SorvaneMac/Screens/CompareMeans/CompareMeansRuns.h"

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

SampleFigures SampleFigures::of(std::string name, std::span<const double> values) {
    return {.name = std::move(name),
            .n = static_cast<std::int64_t>(values.size()),
            .mean = DescriptiveStatistics::mean(values),
            .standardDeviation = DescriptiveStatistics::standardDeviation(values),
            .standardError = DescriptiveStatistics::standardError(values)};
}

int SampleFigures::decimals() const {
    return ReportDecimals::ofSample(mean, standardDeviation);
}

std::string SampleFigures::words() const {
    return "(M = " + svFigure(mean, decimals()) +
           ", SD = " + svFigure(standardDeviation, decimals()) + ")";
}

std::vector<std::string> SampleFigures::cells() const {
    return {name, ResultText::count(n), svFigure(mean, decimals()),
            svFigure(standardDeviation, decimals()),
            svFigure(standardError, ReportDecimals::of(standardError.value_or(0.0), decimals()))};
}

std::vector<std::string> sampleHeaders(std::string names) {
    return {std::move(names), "n", "M", "SD", "SE"};
}

DifferenceInterval DifferenceInterval::of(const TTestResult& test,
                                          double standardError,
                                          std::int64_t confidence) {
    constexpr double percent = 100.0;
    const double alpha = 1.0 - static_cast<double>(confidence) / percent;
    const double reach =
        MathDistributions::studentTCritical(alpha, test.degreesOfFreedom) * standardError;
    return {.lower = test.meanDifference - reach,
            .upper = test.meanDifference + reach,
            .confidence = confidence};
}

std::vector<std::string> DifferenceInterval::headers() const {
    const std::string level = ResultText::count(confidence) + "% CI ";
    return {level + "Lower", level + "Upper"};
}

}  // namespace sorvane
