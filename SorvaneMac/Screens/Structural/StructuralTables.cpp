#include <algorithm>
#include <cmath>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Structural/StructuralReport.h"

namespace sorvane::StructuralReport {

namespace {

constexpr int decimals = 3;
/// Pairs that the model misses by less are not listed, nor more than so many.
constexpr double leastResidual = 0.10;
constexpr std::size_t mostResiduals = 10;

constexpr std::string_view cutoffs =
    "Common cutoffs: CFI ≥ .95, RMSEA ≤ .06, SRMR ≤ .08 (good); CFI ≥ .90, RMSEA ≤ .08 "
    "(acceptable). Treat indices as guidance, not proof.";

constexpr std::string_view baseline =
    " CFI and TLI compare with variables that are all uncorrelated, predictors among themselves "
    "too; programs that leave those correlations free there give other values.";

bool isVariance(const SEMParameter& parameter) {
    return parameter.lhs == parameter.rhs;
}

/// The variable at which a path ends; empty for a variance or covariance.
std::string_view targetOf(const SEMParameter& parameter) {
    using enum SEMSyntaxOperator;
    return parameter.op == rawValue(measurement)  ? std::string_view(parameter.rhs)
           : parameter.op == rawValue(regression) ? std::string_view(parameter.lhs)
                                                  : std::string_view();
}

/// Whether two or more observed variables predict others and nothing predicts them.
bool haveObservedPredictors(const SEMResult& result) {
    return std::ranges::count_if(result.observed, [&result](const std::string& name) {
               return !isActedOn(result, name) &&
                      std::ranges::any_of(result.parameters, [&name](const SEMParameter& each) {
                          return each.op == rawValue(SEMSyntaxOperator::regression) &&
                                 each.rhs == name;
                      });
           }) > 1;
}

/// Absent where the residual variance is not between 0 and the whole.
std::optional<double> explainedShare(const SEMParameter& residual) {
    if (!residual.standardized || *residual.standardized < 0.0 || *residual.standardized > 1.0) {
        return std::nullopt;
    }
    return 1.0 - *residual.standardized;
}

/// A pair of observed variables and how far the model is from it.
struct Residual {
    std::size_t row = 0;
    std::size_t column = 0;
    double observed = 0.0;
    double implied = 0.0;

    double size() const { return std::abs(observed - implied); }
};

std::vector<Residual> residualsOf(const StructuralRun& run) {
    const std::size_t p = run.result->observed.size();
    if (run.sample.size() != p * p || run.implied.size() != p * p) {
        return {};
    }
    std::vector<Residual> residuals;
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const double scale = std::sqrt(run.sample[i * p + i] * run.sample[j * p + j]);
            const Residual residual{j, i, run.sample[i * p + j] / scale,
                                    run.implied[i * p + j] / scale};
            if (residual.size() >= leastResidual) {
                residuals.push_back(residual);
            }
        }
    }
    std::ranges::stable_sort(residuals, std::ranges::greater(), &Residual::size);
    return residuals;
}

std::string residualNote(std::size_t count) {
    std::string note = "The correlations that the model misses by .10 or more";
    if (count > mostResiduals) {
        note += ", the first " + ResultText::count(std::int64_t{mostResiduals}) + " of " +
                ResultText::count(static_cast<std::int64_t>(count));
    }
    return note + ". A path that is added because of them needs new data.";
}

}  // namespace

std::string fitText(const SEMResult& result) {
    const SEMFitIndices& fit = result.fit;
    std::string text =
        "chi-square(" + ResultText::count(fit.degreesOfFreedom) + ") = " + svFmt(fit.chiSquare, 2);
    text += std::isfinite(fit.pValue) ? ", " + ResultText::pSentence(fit.pValue) : "";
    text += ", CFI = " + svFmtBounded(fit.cfi, decimals) +
            ", TLI = " + svFmtBounded(fit.tli, decimals) +
            ", RMSEA = " + svFmtBounded(fit.rmsea, decimals);
    if (fit.rmseaLower && fit.rmseaUpper) {
        text += ", 90% CI [" + svFmtBounded(fit.rmseaLower, decimals) + ", " +
                svFmtBounded(fit.rmseaUpper, decimals) + "]";
    }
    return text + ", SRMR = " + svFmtBounded(fit.srmr, decimals);
}

ReportTable parameterTable(const SEMResult& result) {
    ReportTable table;
    table.title = "Parameter estimates";
    table.headers = {"Parameter", "Estimate", "SE", "z", "p", "Std."};
    for (const SEMParameter& each : result.parameters) {
        const int places = ReportDecimals::of(each.standardError.value_or(0.0));
        table.rows.push_back({each.label, svFigure(each.estimate, places),
                              each.isFixed ? "fixed" : svFigure(each.standardError, places),
                              svFmt(each.z, 2),
                              each.pValue ? ResultText::pCell(*each.pValue) : "--",
                              svFmt(each.standardized, decimals)});
    }
    table.note = "Maximum-likelihood estimates (marker-variable identification). Model fit: " +
                 fitText(result) + ". Std. takes all variables at a variance of 1.";
    const std::int64_t rows = result.readiness->totalRows;
    if (result.n < rows) {
        *table.note += " Listwise deletion: " + ResultText::count(result.n) + " of " +
                       ResultText::count(rows) + " rows are complete.";
    }
    return table;
}

ReportTable fitTable(const SEMResult& result) {
    const SEMFitIndices& fit = result.fit;
    ReportTable table;
    table.title = "Fit indices";
    table.groupHeaders = {
        {.label = "", .span = 6}, {.label = "90% CI", .span = 2}, {.label = "", .span = 1}};
    table.headers = {"χ²", "df", "p", "CFI", "TLI", "RMSEA", "LL", "UL", "SRMR"};
    table.rows = {{svFmt(fit.chiSquare, 2), ResultText::count(fit.degreesOfFreedom),
                   ResultText::pCell(fit.pValue), svFmt(fit.cfi, decimals),
                   svFmt(fit.tli, decimals), svFmt(fit.rmsea, decimals),
                   svFmtBounded(fit.rmseaLower, decimals), svFmtBounded(fit.rmseaUpper, decimals),
                   svFmt(fit.srmr, decimals)}};
    table.note = std::string(cutoffs);
    if (fit.degreesOfFreedom > 0 && haveObservedPredictors(result)) {
        *table.note += baseline;
    }
    return table;
}

bool isActedOn(const SEMResult& result, const std::string& name) {
    return std::ranges::any_of(result.parameters, [&name](const SEMParameter& parameter) {
        return targetOf(parameter) == name;
    });
}

ReportTable explainedVariance(const SEMResult& result) {
    ReportTable table;
    table.title = "Explained variance";
    table.headers = {"Variable", "R²"};
    for (const SEMParameter& each : result.parameters) {
        if (isVariance(each) && isActedOn(result, each.lhs)) {
            table.rows.push_back({each.lhs, svFmt(explainedShare(each), decimals)});
        }
    }
    return table;
}

ReportTable residualCorrelations(const StructuralRun& run) {
    ReportTable table;
    table.title = "Largest residual correlations";
    table.headers = {"Variables", "Observed", "Implied", "Residual"};
    const std::vector<Residual> residuals = residualsOf(run);
    const std::vector<std::string>& names = run.result->observed;
    for (std::size_t at = 0; at < std::min(residuals.size(), mostResiduals); ++at) {
        const Residual& each = residuals[at];
        table.rows.push_back({names[each.row] + " – " + names[each.column],
                              svFmtBounded(each.observed, decimals),
                              svFmtBounded(each.implied, decimals),
                              svFmtBounded(each.observed - each.implied, decimals)});
    }
    table.note = residualNote(residuals.size());
    return table;
}

}  // namespace sorvane::StructuralReport
