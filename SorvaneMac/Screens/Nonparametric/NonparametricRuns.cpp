#include "SorvaneMac/Screens/Nonparametric/NonparametricRuns.h"

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

OrderFigures OrderFigures::of(std::string name, std::span<const double> values) {
    OrderFigures figures{.name = std::move(name),
                         .n = static_cast<std::int64_t>(values.size()),
                         .median = DescriptiveStatistics::median(values)};
    if (const auto quartiles = DescriptiveStatistics::quartiles(values)) {
        figures.firstQuartile = quartiles->q1;
        figures.thirdQuartile = quartiles->q3;
    }
    return figures;
}

int OrderFigures::decimals() const {
    return ReportDecimals::ofSample(median,
                                    thirdQuartile.value_or(0.0) - firstQuartile.value_or(0.0));
}

std::vector<std::string> OrderFigures::cells() const {
    return {name, ResultText::count(n), svFigure(median, decimals()),
            svFigure(firstQuartile, decimals()), svFigure(thirdQuartile, decimals())};
}

std::string OrderFigures::words() const {
    return "(Mdn = " + svFigure(median, decimals()) + ")";
}

std::vector<std::string> orderHeaders(std::string names) {
    return {std::move(names), "n", "Median", "Q1", "Q3"};
}

}  // namespace sorvane
