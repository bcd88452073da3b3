#include "SorvaneMac/Screens/Imputation/PooledReport.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ExactFit.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::PooledReport {

namespace {

constexpr double muchInformation = 0.5;
constexpr double percent = 100.0;
/// Beyond this the t distribution cannot be told from the normal.
constexpr double manyDegreesOfFreedom = 9999.0;
constexpr std::string_view caution =
    "Pooled figures assume that values are missing at random given the variables of the "
    "imputation; they do not repair values that are missing because of what they would have been.";

std::string dfText(double df) {
    return df > manyDegreesOfFreedom ? "> 9999" : svFmt(df, 1);
}

std::string pooledOver(const PooledBasis& basis) {
    return "pooled over " + ResultText::count(basis.m) + " imputed copies of " +
           ResultText::count(basis.rows) + " cases by Rubin's rules";
}

std::string noteOf(const PooledBasis& basis) {
    return "Pooled over " + ResultText::count(basis.m) +
           " imputed copies by Rubin's rules, n = " + ResultText::count(basis.rows) +
           ". CI = 95% confidence interval. FMI = share of the total variance that is due to the "
           "missing values.";
}

/// What the share of missing information asks of the reader, and of the number of copies.
std::vector<std::string> cautionsOf(const PooledBasis& basis, double information) {
    std::vector<std::string> cautions;
    if (information > muchInformation) {
        cautions.emplace_back(
            "More than half of the variance of a pooled figure is due to missing values; it rests "
            "more on the imputation model than on answers.");
    }
    const auto wanted = static_cast<std::int64_t>(std::ceil(percent * information));
    if (wanted > basis.m) {
        cautions.push_back("The fraction of missing information reaches " +
                           NumberText::fixed(percent * information, 0) +
                           "%. About as many copies as per cent are advised (" +
                           ResultText::count(wanted) + "); there are " +
                           ResultText::count(basis.m) +
                           ", and another seed would give somewhat other figures.");
    }
    return cautions;
}

struct Pooled {
    std::string title;
    std::string sentence;
    ReportTable table;
    Chart chart;
    double information = 0.0;
    /// Beside those that the information asks for.
    std::optional<std::string> caution{};
};

void add(const PooledBasis& basis, Pooled pooled, ScreenContent& content) {
    std::vector<std::string> cautions = cautionsOf(basis, pooled.information);
    if (pooled.caution) {
        cautions.push_back(std::move(*pooled.caution));
    }
    pooled.table.title = pooled.title;
    pooled.table.note = noteOf(basis);
    content.cards.push_back({.title = pooled.title,
                             .subtitle = pooled.sentence,
                             .tables = {pooled.table},
                             .cautions = cautions,
                             .wide = true});
    content.cards.push_back({.title = pooled.chart.title, .charts = {pooled.chart}});
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = pooled.title;
    item.apaSummary = pooled.sentence;
    item.table = std::move(pooled.table);
    for (const std::string& each : cautions) {
        *item.table->note += " " + each;
    }
    item.caution = std::string(caution);
    item.figureCaption = pooled.chart.title + ", " + pooledOver(basis) + ".";
    content.findings.push_back({.item = std::move(item), .figure = std::move(pooled.chart)});
}

Chart intervals(std::string title,
                std::string label,
                std::vector<IntervalPlot::Row> rows,
                std::optional<double> reference) {
    Chart chart;
    chart.title = std::move(title);
    chart.xLabel = std::move(label);
    chart.plot = IntervalPlot{.rows = std::move(rows), .reference = reference};
    return chart;
}

ReportTable coefficientTable(const std::vector<PooledCoefficient>& coefficients) {
    ReportTable table;
    table.groupHeaders = {{.label = "", .span = 6}, {.label = "95% CI", .span = 2}, {.label = ""}};
    table.headers = {"Predictor", "B", "SE", "t", "df", "p", "LL", "UL", "FMI"};
    for (const PooledCoefficient& each : coefficients) {
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back({each.name, svFigure(each.estimate, decimals),
                              svFigure(each.standardError, decimals), svFmt(each.t, 2),
                              dfText(each.degreesOfFreedom), ResultText::pCell(each.pValue),
                              svFigure(each.ciLower, decimals), svFigure(each.ciUpper, decimals),
                              svFmtBounded(each.fractionMissingInfo, 3)});
    }
    return table;
}

std::string sentenceOf(const PooledBasis& basis,
                       const std::vector<PooledCoefficient>& coefficients) {
    std::string text = "Linear regression of " + basis.variable + " on " +
                       ResultText::listed(basis.others) + ", " + pooledOver(basis) + ".";
    for (std::size_t i = 1; i < coefficients.size(); ++i) {
        const PooledCoefficient& each = coefficients[i];
        const int decimals = ReportDecimals::inSentence(each.standardError);
        text += " The effect of " + each.name + " was " +
                std::string(ResultText::significanceWords(each.pValue)) +
                ", B = " + svFigure(each.estimate, decimals) + ", 95% CI [" +
                svFigure(each.ciLower, decimals) + ", " + svFigure(each.ciUpper, decimals) +
                "], t(" + dfText(each.degreesOfFreedom) + ") = " + svFmt(each.t, 2) + ", " +
                ResultText::pSentence(each.pValue) + ".";
    }
    return text;
}

}  // namespace

void addRegression(const PooledBasis& basis,
                   const std::vector<PooledCoefficient>& coefficients,
                   ScreenContent& content) {
    std::vector<IntervalPlot::Row> rows;
    std::vector<double> ofSlopes;
    double information = 0.0;
    for (const PooledCoefficient& each : coefficients) {
        information = std::max(information, each.fractionMissingInfo);
        if (&each != &coefficients.front()) {
            rows.push_back({each.name, each.estimate, each.ciLower, each.ciUpper});
            ofSlopes.push_back(each.t);
        }
    }
    add(basis,
        {.title = "Pooled Regression: " + basis.variable,
         .sentence = sentenceOf(basis, coefficients),
         .table = coefficientTable(coefficients),
         .chart = intervals("Pooled coefficients", "B with 95% CI", std::move(rows), 0.0),
         .information = information,
         .caution = ExactFit::caution(ofSlopes)},
        content);
}

void addCorrelation(const PooledBasis& basis,
                    const PooledCorrelation& correlation,
                    ScreenContent& content) {
    const std::string& second = basis.others.front();
    ReportTable table;
    table.groupHeaders = {{.label = "", .span = 3}, {.label = "95% CI", .span = 2}, {.label = ""}};
    table.headers = {"Variables", "n", "r", "LL", "UL", "FMI"};
    table.rows = {{basis.variable + " and " + second, ResultText::count(basis.rows),
                   svFmtBounded(correlation.r, 3), svFmtBounded(correlation.ciLower, 3),
                   svFmtBounded(correlation.ciUpper, 3),
                   svFmtBounded(correlation.fractionMissingInfo, 3)}};
    add(basis,
        {.title = "Pooled Correlation: " + basis.variable + " and " + second,
         .sentence = "The correlation of " + basis.variable + " and " + second + ", " +
                     pooledOver(basis) +
                     " on Fisher's scale, was r = " + svFmtBounded(correlation.r, 2) +
                     ", 95% CI [" + svFmtBounded(correlation.ciLower, 2) + ", " +
                     svFmtBounded(correlation.ciUpper, 2) + "].",
         .table = std::move(table),
         .chart = intervals("Pooled correlation", "r with 95% CI",
                            {{basis.variable + " and " + second, correlation.r, correlation.ciLower,
                              correlation.ciUpper}},
                            0.0),
         .information = correlation.fractionMissingInfo},
        content);
}

void addMean(const PooledBasis& basis, const PooledEstimate& mean, ScreenContent& content) {
    const std::string error = svFigure(mean.standardError, ReportDecimals::of(mean.standardError));
    const int decimals = mean.standardError > 0.0
                             ? ReportDecimals::inSentence(mean.standardError)
                             : ReportDecimals::ofSample(mean.estimate, std::nullopt);
    const std::string estimate = svFigure(mean.estimate, decimals);
    const std::string lower = svFigure(mean.confidenceIntervalLower, decimals);
    const std::string upper = svFigure(mean.confidenceIntervalUpper, decimals);
    ReportTable table;
    table.groupHeaders = {{.label = "", .span = 5}, {.label = "95% CI", .span = 2}, {.label = ""}};
    table.headers = {"Variable", "n", "M", "SE", "df", "LL", "UL", "FMI"};
    table.rows = {{basis.variable, ResultText::count(basis.rows), estimate, error,
                   dfText(mean.degreesOfFreedom), lower, upper,
                   svFmtBounded(mean.fractionMissingInfo, 3)}};
    add(basis,
        {.title = "Pooled Mean: " + basis.variable,
         .sentence = "The mean of " + basis.variable + ", " + pooledOver(basis) + ", was M = " +
                     estimate + ", SE = " + error + ", 95% CI [" + lower + ", " + upper + "].",
         .table = std::move(table),
         .chart = intervals("Pooled mean", "M with 95% CI",
                            {{basis.variable, mean.estimate, mean.confidenceIntervalLower,
                              mean.confidenceIntervalUpper}},
                            std::nullopt),
         .information = mean.fractionMissingInfo},
        content);
}

}  // namespace sorvane::PooledReport
