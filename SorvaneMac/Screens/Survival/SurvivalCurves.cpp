#include "SorvaneMac/Screens/Survival/SurvivalCurves.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::SurvivalCurves {

namespace {

constexpr double mostColumns = 7.0;

/// A step of 1, 2, 5 or 10 times a power of ten.
struct RoundStep {
    double factor = 1.0;
    double exponent = 0.0;

    /// The nearest number to so many steps: powers below 1 divide, as they are none themselves.
    double times(double count) const {
        return exponent < 0.0 ? count * factor / std::pow(10.0, -exponent)
                              : count * factor * std::pow(10.0, exponent);
    }
};

/// The one that divides the range into at most so many.
RoundStep roundStep(double range) {
    const double exponent = std::floor(std::log10(range / mostColumns));
    for (const double factor : {1.0, 2.0, 5.0}) {
        const RoundStep step{factor, exponent};
        if (range / step.times(1.0) <= mostColumns) {
            return step;
        }
    }
    return {10.0, exponent};
}

/// From 0 to the last time.
std::vector<double> roundTimes(double last) {
    std::vector<double> times = {0.0};
    if (!(last > 0.0) || !std::isfinite(last)) {
        return times;
    }
    const RoundStep step = roundStep(last);
    if (!(step.times(1.0) > 0.0)) {
        return times;
    }
    for (double count = 1.0; step.times(count) <= last; count += 1.0) {
        times.push_back(step.times(count));
    }
    return times;
}

LinePlot::Series seriesOf(const KaplanMeierStratum& stratum, const FollowUp& cases) {
    LinePlot::Series series{.name = stratum.name, .x = {0.0}, .y = {1.0}};
    for (const KaplanMeierPoint& point : stratum.points) {
        series.x.push_back(point.time);
        series.y.push_back(point.survival);
    }
    series.x.push_back(cases.times.back());
    series.y.push_back(series.y.back());
    series.strokes = cases.censored;
    return series;
}

}  // namespace

std::vector<FollowUp> followUps(const NumericColumn& time,
                                const NumericColumn& event,
                                const TextColumn* group,
                                const std::vector<KaplanMeierStratum>& strata) {
    std::map<std::string_view, std::size_t> positions;
    std::vector<FollowUp> cases;
    for (const KaplanMeierStratum& stratum : strata) {
        positions.emplace(stratum.name, cases.size());
        cases.push_back({.stratum = stratum.name});
    }
    for (std::size_t row = 0; row < time.size(); ++row) {
        const std::optional<double> t = time[row];
        const std::optional<double> e = event[row];
        if (!t || !e || *t < 0.0) {
            continue;
        }
        const auto found =
            group ? positions.find(UnicodeText::trimmed((*group)[row])) : positions.begin();
        if (found != positions.end()) {
            cases[found->second].times.push_back(*t);
            if (*e == 0.0) {
                cases[found->second].censored.push_back(*t);
            }
        }
    }
    for (FollowUp& each : cases) {
        std::ranges::sort(each.times);
        std::ranges::sort(each.censored);
        each.censored.erase(std::unique(each.censored.begin(), each.censored.end()),
                            each.censored.end());
    }
    return cases;
}

Chart chart(const KaplanMeierRun& run, const std::vector<FollowUp>& cases) {
    LinePlot plot{.join = LinePlot::Join::steps,
                  .markers = false,
                  .reference = 0.5,
                  .referenceName = "S(t) = .50",
                  .yRange = ValueRange{0.0, 1.0}};
    for (std::size_t at = 0; at < cases.size(); ++at) {
        plot.series.push_back(seriesOf(run.result->strata[at], cases[at]));
    }
    Chart chart;
    chart.title = "Survival curves";
    chart.subtitle = (run.group.empty() ? "" : "By " + run.group + ". ") +
                     "Upright strokes mark times at which cases were censored.";
    chart.xLabel = run.time;
    chart.yLabel = "Survival probability S(t)";
    chart.plot = std::move(plot);
    return chart;
}

ReportTable atRisk(const std::string& time, const std::vector<FollowUp>& cases) {
    double last = 0.0;
    for (const FollowUp& each : cases) {
        last = std::max(last, each.times.back());
    }
    const std::vector<double> times = roundTimes(last);
    ReportTable table;
    table.title = "Number at risk";
    table.headers = {"Stratum"};
    table.groupHeaders = {{.label = "", .span = 1},
                          {.label = time, .span = static_cast<int>(times.size())}};
    for (const double t : times) {
        table.headers.push_back(NumberText::derivedValue(t));
    }
    for (const FollowUp& each : cases) {
        std::vector<std::string> row = {each.stratum};
        for (const double t : times) {
            const auto first = std::ranges::lower_bound(each.times, t);
            row.push_back(ResultText::count(each.times.end() - first));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

}  // namespace sorvane::SurvivalCurves
