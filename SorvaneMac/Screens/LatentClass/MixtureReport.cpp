#include "SorvaneMac/Screens/LatentClass/MixtureReport.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/LatentClass/LatentClassFields.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::MixtureReport {

namespace {

std::string className(std::size_t c) {
    return "Class " + ResultText::count(static_cast<std::int64_t>(c + 1));
}

void addClassHeaders(ReportTable& table, const LatentClassResult& result) {
    for (std::size_t c = 0; c < result.profiles.size(); ++c) {
        table.headers.push_back(className(c));
    }
}

ReportTable classTable(const LatentClassResult& result) {
    ReportTable table;
    table.title = "Classes";
    table.headers = {"Class", "Estimated proportion", "Cases assigned", "% of cases"};
    for (std::size_t c = 0; c < result.profiles.size(); ++c) {
        const auto assigned = std::ranges::count(result.assignments, static_cast<std::int64_t>(c));
        table.rows.push_back(
            {ResultText::count(static_cast<std::int64_t>(c + 1)),
             svFmt(result.profiles[c].proportion, 3), ResultText::count(assigned),
             svFmt(100.0 * static_cast<double>(assigned) / static_cast<double>(result.n), 1)});
    }
    return table;
}

ReportTable meanTable(const LatentClassResult& result) {
    ReportTable table;
    table.title = "Profiles of the classes";
    table.headers = {"Indicator"};
    addClassHeaders(table, result);
    for (std::size_t j = 0; j < result.variableNames.size(); ++j) {
        std::vector<std::string> row = {result.variableNames[j]};
        for (const LatentClassProfile& profile : result.profiles) {
            const double deviation = (*profile.standardDeviations)[j];
            const int decimals = ReportDecimals::of(deviation, 2);
            row.push_back(svFigure((*profile.means)[j], decimals) + " (" +
                          svFigure(deviation, decimals) + ")");
        }
        table.rows.push_back(std::move(row));
    }
    table.note = "Means, with standard deviations in parentheses.";
    return table;
}

ReportTable responseTable(const LatentClassResult& result) {
    ReportTable table;
    table.title = "Response probabilities";
    table.headers = {"Indicator", "Category"};
    addClassHeaders(table, result);
    for (std::size_t j = 0; j < result.variableNames.size(); ++j) {
        const std::vector<std::string>& labels = (*result.categoryLabels)[j];
        for (std::size_t l = 0; l < labels.size(); ++l) {
            std::vector<std::string> row = {l == 0 ? result.variableNames[j] : "", labels[l]};
            for (const LatentClassProfile& profile : result.profiles) {
                row.push_back(svFmtBounded((*profile.responseProbs)[j][l], 3));
            }
            table.rows.push_back(std::move(row));
        }
    }
    return table;
}

ReportTable fitTable(const LatentClassResult& result) {
    ReportTable table;
    table.title = "Model fit";
    table.headers = {"Classes", "n", "Log likelihood", "AIC", "BIC", "Entropy", "Iterations"};
    table.rows = {{ResultText::count(result.classCount), ResultText::count(result.n),
                   svFmt(result.logLikelihood, 2), svFmt(result.aic, 2), svFmt(result.bic, 2),
                   svFmt(result.entropy, 3), ResultText::count(result.iterations)}};
    return table;
}

/// The classes' means of one indicator about the mean of all cases, in their standard deviation:
/// both follow from the mixture.
std::vector<double> standardScores(const LatentClassResult& result, std::size_t j) {
    double mean = 0.0;
    for (const LatentClassProfile& profile : result.profiles) {
        mean += profile.proportion * (*profile.means)[j];
    }
    double variance = 0.0;
    for (const LatentClassProfile& profile : result.profiles) {
        const double apart = (*profile.means)[j] - mean;
        const double s = (*profile.standardDeviations)[j];
        variance += profile.proportion * (s * s + apart * apart);
    }
    const double deviation = std::sqrt(variance);
    std::vector<double> scores;
    for (const LatentClassProfile& profile : result.profiles) {
        scores.push_back(deviation > 0.0 ? ((*profile.means)[j] - mean) / deviation : 0.0);
    }
    return scores;
}

LinePlot emptyLines(const LatentClassResult& result) {
    LinePlot plot{.categories = result.variableNames};
    for (std::size_t c = 0; c < result.profiles.size(); ++c) {
        plot.series.push_back({.name = className(c)});
    }
    return plot;
}

Chart meanLines(const LatentClassResult& result) {
    LinePlot plot = emptyLines(result);
    plot.reference = 0.0;
    plot.referenceName = "all cases";
    for (std::size_t j = 0; j < result.variableNames.size(); ++j) {
        const std::vector<double> scores = standardScores(result, j);
        for (std::size_t c = 0; c < scores.size(); ++c) {
            plot.series[c].x.push_back(static_cast<double>(j));
            plot.series[c].y.push_back(scores[c]);
        }
    }
    Chart chart;
    chart.subtitle = "Means of the classes, in standard scores of all cases.";
    chart.yLabel = "Mean (standard scores)";
    chart.plot = std::move(plot);
    return chart;
}

/// The later of two categories: by number where both are numbers, else by text.
std::size_t higherOf(const std::vector<std::string>& labels) {
    const std::optional<double> first = NumberText::parse(labels[0]);
    const std::optional<double> second = NumberText::parse(labels[1]);
    const bool isRising = first && second ? *first < *second : labels[0] < labels[1];
    return isRising ? 1 : 0;
}

Chart probabilityLines(const LatentClassResult& result) {
    LinePlot plot = emptyLines(result);
    plot.yRange = ValueRange{0.0, 1.0};
    for (std::size_t j = 0; j < result.variableNames.size(); ++j) {
        const std::size_t higher = higherOf((*result.categoryLabels)[j]);
        plot.categories[j] += " = " + (*result.categoryLabels)[j][higher];
        for (std::size_t c = 0; c < result.profiles.size(); ++c) {
            plot.series[c].x.push_back(static_cast<double>(j));
            plot.series[c].y.push_back((*result.profiles[c].responseProbs)[j][higher]);
        }
    }
    Chart chart;
    chart.subtitle = "How probable the answer named is in each class.";
    chart.yLabel = "Probability";
    chart.plot = std::move(plot);
    return chart;
}

Chart probabilityMap(const LatentClassResult& result) {
    HeatMap map{.palette = HeatMap::Palette::sequential, .range = ValueRange{0.0, 1.0}};
    for (std::size_t c = 0; c < result.profiles.size(); ++c) {
        map.columns.push_back(className(c));
    }
    for (std::size_t j = 0; j < result.variableNames.size(); ++j) {
        const std::vector<std::string>& labels = (*result.categoryLabels)[j];
        for (std::size_t l = 0; l < labels.size(); ++l) {
            map.rows.push_back(result.variableNames[j] + " = " + labels[l]);
            for (const LatentClassProfile& profile : result.profiles) {
                map.values.push_back((*profile.responseProbs)[j][l]);
            }
        }
    }
    Chart chart;
    chart.subtitle = "How probable each answer is in each class.";
    chart.plot = std::move(map);
    return chart;
}

}  // namespace

std::string_view title(LatentMixtureMode mode) {
    return analysisName(mode == LatentMixtureMode::profile ? LatentScreenKind::profile
                                                           : LatentScreenKind::classes);
}

std::vector<ReportTable> tables(const LatentClassResult& result) {
    const bool isProfile = result.mode == LatentMixtureMode::profile;
    return {classTable(result), isProfile ? meanTable(result) : responseTable(result),
            fitTable(result)};
}

Chart profilePlot(const LatentClassResult& result) {
    const auto isBinary = [](const std::vector<std::string>& labels) {
        return labels.size() == 2;
    };
    Chart chart = result.mode == LatentMixtureMode::profile               ? meanLines(result)
                  : std::ranges::all_of(*result.categoryLabels, isBinary) ? probabilityLines(result)
                                                                          : probabilityMap(result);
    chart.title = "Profile plot";
    return chart;
}

std::string sentence(const LatentClassResult& result) {
    std::vector<std::string> shares;
    for (const LatentClassProfile& profile : result.profiles) {
        shares.push_back(svFmt(100.0 * profile.proportion, 1) + "%");
    }
    return "A " + std::string(title(result.mode)).replace(0, 1, "l") + " of " +
           ResultText::listed(result.variableNames) + " (n = " + ResultText::count(result.n) +
           ") with " + ResultText::count(result.classCount) + " classes gave a log likelihood of " +
           svFmt(result.logLikelihood, 2) + ", AIC = " + svFmt(result.aic, 2) +
           ", BIC = " + svFmt(result.bic, 2) + ", entropy = " + svFmtBounded(result.entropy, 2) +
           ". The estimated class shares were " + ResultText::listed(shares) + ".";
}

}  // namespace sorvane::MixtureReport
