#include "SorvaneMac/Screens/Invariance/InvarianceReport.h"

#include "SorvaneCore/Models/Structural/InvarianceWording.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::InvarianceReport {

namespace {

/// Hints of chance size are not worth a row.
constexpr double notableIndex = 3.84;
constexpr std::size_t mostHints = 10;

std::string interval(const InvarianceFit& fit) {
    return fit.rmseaLower && fit.rmseaUpper ? "[" + svFmtBounded(*fit.rmseaLower, 3) + ", " +
                                                  svFmtBounded(*fit.rmseaUpper, 3) + "]"
                                            : "--";
}

ReportTable fitTable(const InvarianceResult& result) {
    ReportTable table;
    table.title = "Fit of the models";
    table.headers = {"Model", "χ²", "df", "p", "CFI", "TLI", "RMSEA", "90% CI", "SRMR", "BIC"};
    for (const InvarianceFit& fit : result.fits) {
        table.rows.push_back({std::string(displayName(fit.level)), svFmt(fit.chiSquare, 2),
                              ResultText::count(fit.degreesOfFreedom),
                              ResultText::pCell(fit.pValue), svFmtBounded(fit.cfi, 3),
                              svFmtBounded(fit.tli, 3), svFmtBounded(fit.rmsea, 3), interval(fit),
                              svFmtBounded(fit.srmr, 3), svFmt(fit.bic, 1)});
    }
    return table;
}

ReportTable comparisonTable(const InvarianceResult& result) {
    ReportTable table;
    table.title = "Comparison of the models";
    table.headers = {"Model", "Against", "Δχ²", "Δdf", "p", "ΔCFI", "ΔRMSEA", "Change"};
    for (const InvarianceComparison& each : result.comparisons) {
        table.rows.push_back(
            {std::string(displayName(each.level)), std::string(displayName(each.against)),
             svFmt(each.chiSquareDifference, 2), ResultText::count(each.dfDifference),
             ResultText::pCell(each.pValue), svFmtBounded(each.deltaCFI, 3),
             svFmtBounded(each.deltaRMSEA, 3), each.isWithinCutoffs ? "small" : "not small"});
    }
    table.note =
        "A change is called small where CFI falls by at most .010 and RMSEA grows by at most .015 "
        "(guidance, not a test).";
    return table;
}

/// Figures of the configural model: a row per item, a column per group.
ReportTable itemTable(const InvarianceResult& result,
                      const std::string& title,
                      std::vector<double> InvarianceGroupEstimates::*figures) {
    ReportTable table;
    table.title = title;
    table.headers = {"Item"};
    for (const std::string& group : result.groups) {
        table.headers.push_back(group);
    }
    for (std::size_t item = 0; item < result.itemNames.size(); ++item) {
        std::vector<std::string> row = {result.itemNames[item]};
        for (const InvarianceGroupEstimates& group : result.fits.front().groups) {
            row.push_back(svFmt((group.*figures)[item], 3));
        }
        table.rows.push_back(std::move(row));
    }
    table.note =
        "Of the configural model, in which each group has estimates of its own. The loading of the "
        "first item is set to 1 in every group; if that item itself works differently, the others "
        "seem to.";
    return table;
}

ReportTable hintTable(const InvarianceResult& result) {
    ReportTable table;
    table.title = "Items that differ most between groups";
    table.headers = {"Held equal", "Item", "Group", "Modification index", "p", "Expected change"};
    for (const InvarianceHint& hint : result.hints) {
        if (hint.modificationIndex >= notableIndex && table.rows.size() < mostHints) {
            table.rows.push_back({hint.level == InvarianceLevel::metric ? "Loading" : "Intercept",
                                  hint.itemName, hint.groupName, svFmt(hint.modificationIndex, 2),
                                  ResultText::pCell(hint.pValue), svFmt(hint.expectedChange, 3)});
        }
    }
    table.note =
        "By how much chi-square would about fall if the loading or intercept were free in the "
        "group; p is not corrected for the number of coefficients looked at. Found in these data, "
        "so exploratory.";
    return table;
}

ReportTable meanTable(const InvarianceResult& result) {
    ReportTable table;
    table.title = "Latent means under equal intercepts";
    table.headers = {"Group", "Difference", "SE", "z", "p"};
    for (const LatentMeanDifference& each : result.latentMeans) {
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back({each.groupName, svFigure(each.difference, decimals),
                              svFigure(each.standardError, decimals), svFmt(each.z, 2),
                              ResultText::pCell(each.pValue)});
    }
    table.note = "Distance from " + result.groups.front() +
                 ", in standard deviations of the factor there; to be read only if scalar "
                 "invariance holds.";
    return table;
}

}  // namespace

std::string sentence(const InvarianceResult& result) {
    std::string text = InvarianceWording::summary(result);
    for (const InvarianceComparison& each : result.comparisons) {
        text += " " + InvarianceWording::comparison(each);
    }
    return text;
}

std::vector<Tile> tiles(const InvarianceResult& result) {
    std::vector<Tile> all;
    for (const InvarianceFit& fit : result.fits) {
        all.push_back({std::string(displayName(fit.level)) + " CFI", svFmtBounded(fit.cfi, 3),
                       fit.converged ? "RMSEA " + svFmtBounded(fit.rmsea, 3) : "did not converge"});
    }
    all.push_back({"Cases used", ResultText::count(result.n),
                   ResultText::count(static_cast<std::int64_t>(result.groups.size())) +
                       " groups of " + result.groupFactorName});
    return all;
}

std::vector<ReportTable> tables(const InvarianceResult& result) {
    std::vector<ReportTable> all = {fitTable(result)};
    for (ReportTable& table :
         std::vector<ReportTable>{comparisonTable(result), hintTable(result), meanTable(result)}) {
        if (!table.rows.empty()) {
            all.push_back(std::move(table));
        }
    }
    all.push_back(itemTable(result, "Loadings", &InvarianceGroupEstimates::loadings));
    all.push_back(itemTable(result, "Intercepts", &InvarianceGroupEstimates::intercepts));
    return all;
}

std::vector<Chart> charts(const InvarianceResult& result) {
    LinePlot plot{.categories = result.itemNames};
    for (const InvarianceGroupEstimates& group : result.fits.front().groups) {
        LinePlot::Series series{.name = group.name, .y = group.loadings};
        for (std::size_t item = 0; item < group.loadings.size(); ++item) {
            series.x.push_back(static_cast<double>(item));
        }
        plot.series.push_back(std::move(series));
    }
    Chart chart;
    chart.title = "Loadings by group";
    chart.subtitle = "Estimated freely in each group; the first item's is 1";
    chart.yLabel = "Loading";
    chart.plot = std::move(plot);
    return {chart};
}

}  // namespace sorvane::InvarianceReport
