#include "SorvaneMac/Screens/Multilevel/MultilevelReport.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelNotes.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::MultilevelReport {

namespace {

/// The decimals of every component, at least: those that the smallest that is not zero needs, up
/// to four.
int varianceDecimals(const MultilevelResult& result) {
    double smallest = 1.0;
    for (const MultilevelVarianceComponent& component : result.varianceComponents) {
        if (component.standardDeviation > 0.0) {
            smallest = std::min({smallest, component.standardDeviation, component.variance});
        }
    }
    return smallest >= 1.0 ? 2 : smallest >= 0.1 ? 3 : 4;
}

/// "3 to 20 cases each"
std::string sizeWords(const MultilevelRun::Sizes& sizes) {
    if (sizes.most == 0) {
        return "";
    }
    return sizes.least == sizes.most ? DatasetText::counted(sizes.least, "case") + " each"
                                     : ResultText::count(sizes.least) + " to " +
                                           DatasetText::counted(sizes.most, "case") + " each";
}

Tile caseTile(const MultilevelResult& result) {
    const std::int64_t total = result.readiness.totalRows;
    return {"Cases used", ResultText::count(result.n),
            total > result.n
                ? DatasetText::counted(total - result.n, "row") + " left out as incomplete"
                : "complete on all variables"};
}

Tile betweenTile(const MultilevelRun& run) {
    const MultilevelResult& result = *run.result;
    if (result.icc) {
        return {"ICC", svFmtBounded(*result.icc, 2),
                run.choice.slope.empty() ? "share of variance between clusters"
                                         : "where " + run.choice.slope + " is 0"};
    }
    if (const std::optional<double> icc = latentICC(run)) {
        return {"ICC (latent scale)", svFmtBounded(*icc, 2), "share of variance between clusters"};
    }
    const double deviation = result.varianceComponents[0].standardDeviation;
    return {"Intercept SD",
            svFigure(deviation, ReportDecimals::of(deviation, varianceDecimals(result))),
            "between levels of " + run.choice.cluster};
}

Tile fitTile(const MultilevelResult& result) {
    const std::string signal = result.converged ? "converged" : "not converged";
    return result.remlCriterion ? Tile{"REML criterion", svFmt(*result.remlCriterion, 2), signal}
                                : Tile{"Log likelihood", svFmt(result.logLikelihood, 2), signal};
}

ReportTable coefficientTable(const MultilevelRun& run) {
    const bool hasDf = run.choice.dfMethod != MultilevelDFMethod::wald;
    ReportTable table;
    table.title = "Fixed Effects for " + run.choice.outcome;
    table.headers = {"Predictor", "B", "SE"};
    if (hasDf) {
        table.headers.emplace_back("df");
    }
    table.headers.emplace_back(hasDf ? displayName(run.choice.dfMethod) : "z");
    table.headers.insert(table.headers.end(), {"p", "LL", "UL"});
    table.groupHeaders = {{.label = "", .span = hasDf ? 6 : 5}, {.label = "95% CI", .span = 2}};
    for (const MultilevelFixedEffect& each : run.result->fixedEffects) {
        const int decimals = ReportDecimals::of(each.standardError);
        std::vector<std::string> row = {each.name, svFigure(each.estimate, decimals),
                                        svFigure(each.standardError, decimals)};
        if (hasDf) {
            row.push_back(svFmt(each.df, 2));
        }
        row.insert(row.end(),
                   {svFmt(each.z, 2), ResultText::pCell(each.pValue),
                    svFigure(each.lowerBound, decimals), svFigure(each.upperBound, decimals)});
        table.rows.push_back(std::move(row));
    }
    return table;
}

ReportTable ratioTable(const MultilevelRun& run) {
    const std::string ratio = run.choice.isLogistic() ? "OR" : "RR";
    ReportTable table;
    table.title = "Fixed Effects for " + run.choice.outcome;
    table.headers = {"Predictor", "B", "SE", "z", "p", ratio, "LL", "UL"};
    table.groupHeaders = {{.label = "", .span = 6}, {.label = "95% CI", .span = 2}};
    for (const MultilevelFixedEffect& each : run.result->fixedEffects) {
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back({each.name, svFigure(each.estimate, decimals),
                              svFigure(each.standardError, decimals), svFmt(each.z, 2),
                              ResultText::pCell(each.pValue),
                              ResultText::ratio(std::exp(each.estimate), decimals),
                              ResultText::ratio(std::exp(each.lowerBound), decimals),
                              ResultText::ratio(std::exp(each.upperBound), decimals)});
    }
    return table;
}

bool isSlope(const MultilevelRun& run, std::size_t component) {
    return component == 1 && !run.choice.slope.empty();
}

ReportTable varianceTable(const MultilevelRun& run) {
    ReportTable table;
    table.title =
        run.choice.isGaussian() ? "Random Effects and Residual Variance" : "Random Effects";
    table.headers = {"Component", "Variance", "SD"};
    const int fewest = varianceDecimals(*run.result);
    const std::vector<MultilevelVarianceComponent>& components = run.result->varianceComponents;
    for (std::size_t at = 0; at < components.size(); ++at) {
        const MultilevelVarianceComponent& each = components[at];
        const int decimals =
            vanishes(run, at)
                ? fewest
                : ReportDecimals::of(std::min(each.variance, each.standardDeviation), fewest);
        // What a variance needs a power of ten for, its root may well do without.
        const int ofRoot =
            decimals > mostDecimals ? ReportDecimals::of(each.standardDeviation, fewest) : decimals;
        table.rows.push_back({each.name, svFigure(each.variance, decimals),
                              svFigure(each.standardDeviation, ofRoot)});
    }
    table.note = MultilevelNotes::random(run);
    return table;
}

}  // namespace

Criteria criteria(const MultilevelRun& run) {
    const MultilevelResult& result = *run.result;
    // At a boundary the correlation cannot be told, but was a parameter all the same.
    const bool hasCorrelation = !run.choice.slope.empty() && run.choice.correlated;
    const double parameters = static_cast<double>(
        result.fixedEffects.size() + result.varianceComponents.size() + (hasCorrelation ? 1 : 0));
    const double deviance = -2.0 * result.logLikelihood;
    return {.aic = deviance + 2.0 * parameters,
            .bic = deviance + std::log(static_cast<double>(result.n)) * parameters};
}

std::optional<double> latentICC(const MultilevelRun& run) {
    if (!run.choice.isLogistic() || !run.choice.slope.empty() || run.choice.hasTwoFactors()) {
        return std::nullopt;
    }
    const double variance = run.result->varianceComponents[0].variance;
    return variance / (variance + std::numbers::pi * std::numbers::pi / 3.0);
}

bool isNearZero(const MultilevelChoice& choice,
                const MultilevelResult& result,
                std::size_t component,
                double square) {
    if (component >= result.varianceComponents.size()) {
        return false;
    }
    // As the cautions of linear models have it; the scale of the others is that of their link.
    const double smallest = choice.isGaussian()
                                ? 1e-10 * std::max(1.0, result.varianceComponents.back().variance)
                                : 1e-6;
    return result.varianceComponents[component].variance * square < smallest;
}

bool isNearZero(const MultilevelRun& run, std::size_t component) {
    return isNearZero(run.choice, *run.result, component,
                      isSlope(run, component) ? run.slopeSquare : 1.0);
}

bool vanishes(const MultilevelRun& run, std::size_t component) {
    constexpr double share = 1e-10;
    const std::vector<MultilevelVarianceComponent>& all = run.result->varianceComponents;
    const double square = isSlope(run, component) ? run.slopeSquare : 1.0;
    return run.choice.isGaussian() ? all[component].variance * square < share * all.back().variance
                                   : isNearZero(run, component);
}

std::vector<Tile> tiles(const MultilevelRun& run) {
    const MultilevelResult& result = *run.result;
    const bool hasLevels = run.choice.hasTwoFactors();
    std::vector<Tile> tiles = {caseTile(result),
                               {(hasLevels ? "Levels of " : "Clusters of ") + run.choice.cluster,
                                ResultText::count(result.nClusters), sizeWords(run.sizes)}};
    if (result.nClustersSecondary) {
        tiles.push_back({"Levels of " + run.choice.secondLabel(),
                         ResultText::count(*result.nClustersSecondary),
                         sizeWords(run.secondSizes)});
    } else {
        tiles.push_back(betweenTile(run));
    }
    tiles.push_back(fitTile(result));
    return tiles;
}

std::vector<ReportTable> tables(const MultilevelRun& run) {
    return {run.choice.isGaussian() ? coefficientTable(run) : ratioTable(run), varianceTable(run)};
}

}  // namespace sorvane::MultilevelReport
