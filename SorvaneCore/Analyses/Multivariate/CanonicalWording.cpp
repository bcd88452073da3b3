#include "SorvaneCore/Analyses/Multivariate/CanonicalWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::CanonicalWording {

namespace {

std::string percent(double share) {
    return NumberText::fixed(100.0 * share, 1) + "%";
}

}  // namespace

std::string inBothSets(const std::string& name) {
    return "The variable \"" + name +
           "\" stands in both sets, so that they correlate perfectly. Keep it in one of them.";
}

std::string tooFewCases(std::int64_t n, std::int64_t variables) {
    return "Too few complete cases (" + NumberText::integer(n) + ") for " +
           NumberText::integer(variables) +
           " variables in both sets. Collect more cases or reduce the number of variables.";
}

std::string collinear(const std::string& set) {
    return "The variables of the " + set +
           " set are perfectly collinear, or one does not vary. Drop a redundant variable.";
}

std::string perfect() {
    return "A combination of the first set reproduces one of the second exactly, so nothing can be "
           "tested. Look for a variable that is computed from variables of the other set.";
}

std::string noEigenvalues() {
    return "The canonical correlations could not be computed; the data may be numerically "
           "degenerate.";
}

std::string rowsDropped(std::int64_t rows) {
    return NumberText::integer(rows) +
           " row(s) were dropped because a variable of either set was missing.";
}

std::string fewCasesPerVariable(std::int64_t n, std::int64_t variables) {
    return "There are fewer than 10 cases per variable (" + NumberText::integer(n) + " cases, " +
           NumberText::integer(variables) +
           " variables). Canonical correlations are too high and coefficients unstable in small "
           "samples; treat this as exploratory.";
}

std::string summary(const CanonicalCorrelationResult& result) {
    if (result.functions.empty()) {
        return "";
    }
    const WilksTest& test = result.tests.front();
    return "A canonical correlation analysis related " +
           NumberText::integer(static_cast<std::int64_t>(result.setXNames.size())) + " and " +
           NumberText::integer(static_cast<std::int64_t>(result.setYNames.size())) +
           " variables (n = " + NumberText::integer(result.n) +
           "). The first canonical correlation was " +
           NumberText::fixed(result.functions.front().correlation, 3) +
           "; all functions together, Wilks' lambda = " + NumberText::fixed(test.wilksLambda, 3) +
           ", F(" + NumberText::clean(test.dfNumerator) + ", " +
           NumberText::clean(test.dfDenominator) + ") = " + NumberText::fixed(test.approxF, 2) +
           ", p " + (test.pValue < 0.001 ? "" : "= ") + NumberText::pValue(test.pValue) +
           ". The second set explains " + percent(result.totalRedundancyX) +
           " of the variance of the first, and the first " + percent(result.totalRedundancyY) +
           " of that of the second.";
}

std::vector<std::string> cautions() {
    return {
        "A canonical correlation relates two combinations that were chosen to correlate as "
        "highly as they can; it is not the share of variance that one set explains in the "
        "other, which is the redundancy.",
        "Coefficients of correlated variables change sign and size from sample to sample; read "
        "the loadings beside them.",
        "The tests take the functions together, from each one onward; they assume normal "
        "variables and independent cases.",
        "Association between the sets is not causation, and neither set is the outcome of the "
        "other."};
}

}  // namespace sorvane::CanonicalWording
