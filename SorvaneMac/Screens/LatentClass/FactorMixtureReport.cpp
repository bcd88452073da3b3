#include "SorvaneMac/Screens/LatentClass/FactorMixtureReport.h"

#include <cmath>

#include "SorvaneCore/Models/FactorMixtureWording.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::FactorMixtureReport {

namespace {

std::string className(std::size_t c) {
    return "Class " + ResultText::count(static_cast<std::int64_t>(c + 1));
}

ReportTable classTable(const FactorMixtureResult& result) {
    ReportTable table;
    table.title = "Classes";
    table.headers = {"Class", "Estimated proportion", "Cases assigned", "% of cases",
                     "Mean posterior"};
    for (std::size_t c = 0; c < result.classes.size(); ++c) {
        const FactorMixtureClass& each = result.classes[c];
        table.rows.push_back(
            {ResultText::count(static_cast<std::int64_t>(c + 1)), svFmt(each.proportion, 3),
             ResultText::count(each.assigned),
             svFmt(100.0 * static_cast<double>(each.assigned) / static_cast<double>(result.n), 1),
             svFmtBounded(each.meanPosterior, 3)});
    }
    return table;
}

ReportTable interceptTable(const FactorMixtureResult& result,
                           const std::vector<std::string>& names) {
    ReportTable table;
    table.title = "Means of the classes";
    table.headers = {"Indicator"};
    for (std::size_t c = 0; c < result.classes.size(); ++c) {
        table.headers.push_back(className(c));
    }
    for (std::size_t j = 0; j < names.size(); ++j) {
        std::vector<std::string> row = {names[j]};
        const int decimals = ReportDecimals::of(std::sqrt(result.residualVariances[j]), 2);
        for (const FactorMixtureClass& each : result.classes) {
            row.push_back(svFigure(each.intercepts[j], decimals));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

ReportTable factorTable(const FactorMixtureResult& result, const std::vector<std::string>& names) {
    ReportTable table;
    table.title = "The factor within classes";
    table.headers = {"Indicator", "Loading", "Standardized", "Residual variance"};
    for (std::size_t j = 0; j < names.size(); ++j) {
        const double residual = result.residualVariances[j];
        table.rows.push_back({names[j],
                              svFigure(result.loadings[j], ReportDecimals::of(std::sqrt(residual))),
                              svFmtBounded(result.standardizedLoadings[j], 3),
                              svFigure(residual, ReportDecimals::of(residual))});
    }
    return table;
}

ReportTable fitTable(const FactorMixtureResult& result) {
    ReportTable table;
    table.title = "Model fit";
    table.headers = {"Classes", "n",   "Parameters", "Log likelihood",
                     "AIC",     "BIC", "Entropy",    "Iterations"};
    table.rows = {{ResultText::count(result.classCount), ResultText::count(result.n),
                   ResultText::count(result.parameterCount), svFmt(result.logLikelihood, 2),
                   svFmt(result.aic, 2), svFmt(result.bic, 2), svFmtBounded(result.entropy, 3),
                   ResultText::count(result.iterations)}};
    return table;
}

}  // namespace

std::string sentence(const FactorMixtureResult& result) {
    std::vector<std::string> shares;
    for (const FactorMixtureClass& each : result.classes) {
        shares.push_back(svFmt(100.0 * each.proportion, 1) + "%");
    }
    return FactorMixtureWording::summary(result) + " The estimated class shares were " +
           ResultText::listed(shares) + ".";
}

std::vector<Tile> tiles(const FactorMixtureResult& result) {
    return {{"Classes", ResultText::count(result.classCount),
             result.converged ? "converged" : "not converged"},
            {"BIC", svFmt(result.bic, 2), "AIC " + svFmt(result.aic, 2)},
            {"Entropy", svFmtBounded(result.entropy, 2), "1 is certain of every case"},
            {"Cases used", ResultText::count(result.n), "complete on all indicators"}};
}

std::vector<ReportTable> tables(const FactorMixtureResult& result,
                                const std::vector<std::string>& names) {
    return {classTable(result), interceptTable(result, names), factorTable(result, names),
            fitTable(result)};
}

Chart interceptPlot(const FactorMixtureResult& result, const std::vector<std::string>& names) {
    LinePlot plot{.categories = names, .reference = 0.0, .referenceName = "all classes"};
    for (std::size_t c = 0; c < result.classes.size(); ++c) {
        plot.series.push_back({.name = className(c)});
    }
    for (std::size_t j = 0; j < names.size(); ++j) {
        double mean = 0.0;
        for (const FactorMixtureClass& each : result.classes) {
            mean += each.proportion * each.intercepts[j];
        }
        const double within =
            std::sqrt(result.loadings[j] * result.loadings[j] + result.residualVariances[j]);
        for (std::size_t c = 0; c < result.classes.size(); ++c) {
            plot.series[c].x.push_back(static_cast<double>(j));
            plot.series[c].y.push_back((result.classes[c].intercepts[j] - mean) / within);
        }
    }
    Chart chart;
    chart.title = "Class means";
    chart.subtitle = "Distance from the mean of all classes, in standard deviations within them";
    chart.yLabel = "Standard deviations";
    chart.plot = std::move(plot);
    return chart;
}

}  // namespace sorvane::FactorMixtureReport
