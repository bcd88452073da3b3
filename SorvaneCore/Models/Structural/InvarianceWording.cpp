#include "SorvaneCore/Models/Structural/InvarianceWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

std::string_view displayName(InvarianceLevel level) {
    switch (level) {
        case InvarianceLevel::configural:
            return "Configural";
        case InvarianceLevel::metric:
            return "Metric";
        case InvarianceLevel::scalar:
            return "Scalar";
    }
    return {};
}

}  // namespace sorvane

namespace sorvane::InvarianceWording {

using NumberText::fixed;
using NumberText::integer;

namespace {

std::string inWords(InvarianceLevel level) {
    return level == InvarianceLevel::configural ? "configural"
           : level == InvarianceLevel::metric   ? "metric"
                                                : "scalar";
}

}  // namespace

std::string tooFewGroups(std::int64_t groups) {
    return "Measurement invariance needs two or more groups; only " + integer(groups) +
           " group(s) had complete data.";
}

std::string tooFewItems() {
    return "A factor needs at least three items to be identified in each group. Add items.";
}

std::string tooFewCases(const std::string& group, std::int64_t n, std::int64_t items) {
    return "The group \"" + group + "\" has only " + integer(n) + " complete case(s) for " +
           integer(items) + " items. Collect more cases, or leave the group out.";
}

std::string singular(const std::string& group) {
    return "The items are perfectly collinear, or one does not vary, in the group \"" + group +
           "\". Drop a redundant item.";
}

std::string configuralFailed() {
    return "The configural model did not converge, so nothing can be compared. One factor may not "
           "fit these items in every group.";
}

std::string rowsDropped(std::int64_t rows) {
    return integer(rows) + " row(s) were dropped because an item or the group was missing.";
}

std::string notConverged(InvarianceLevel level) {
    return "The " + inWords(level) + " model did not converge; it is not compared.";
}

std::string negativeVariance(InvarianceLevel level) {
    return "The " + inWords(level) +
           " model has a variance below zero (a Heywood case). Treat its fit and the comparisons "
           "with it as unstable.";
}

std::string smallGroup(const std::string& group, std::int64_t n) {
    return "The group \"" + group + "\" has only " + integer(n) +
           " cases; differences in fit are imprecise with fewer than 100 cases in a group.";
}

std::string fewCategories(const std::string& item) {
    return "\"" + item +
           "\" has fewer than five distinct values. The models treat items as continuous and "
           "normal; with so few categories, chi-square and the intercepts can mislead.";
}

std::string poorConfiguralFit(double cfi, double rmsea) {
    return "The configural model fits poorly (CFI " + fixed(cfi, 3) + ", RMSEA " + fixed(rmsea, 3) +
           "); comparisons built on it do not show invariance of a sound factor.";
}

std::string comparison(const InvarianceComparison& each) {
    return std::string(displayName(each.level)) + " against " + inWords(each.against) +
           ": chi-square difference = " + fixed(each.chiSquareDifference, 2) + " on " +
           integer(each.dfDifference) + " df, p " + (each.pValue < 0.001 ? "" : "= ") +
           NumberText::pValue(each.pValue) + "; change in CFI " + fixed(each.deltaCFI, 3) +
           ", in RMSEA " + fixed(each.deltaRMSEA, 3) +
           ". By the usual guidance (CFI falls by at "
           "most .010, RMSEA grows by at most .015) the change is " +
           (each.isWithinCutoffs ? "small." : "not small.");
}

std::string summary(const InvarianceResult& result) {
    if (result.fits.empty()) {
        return "";
    }
    std::string supported = "configural";
    for (const InvarianceComparison& each : result.comparisons) {
        if (!each.isWithinCutoffs) {
            break;
        }
        supported = inWords(each.level);
    }
    const InvarianceFit& first = result.fits.front();
    return "One factor of " + integer(static_cast<std::int64_t>(result.itemNames.size())) +
           " items was compared across " +
           integer(static_cast<std::int64_t>(result.groups.size())) + " groups of " +
           result.groupFactorName + " (n = " + integer(result.n) +
           "). The configural model had chi-square(" + integer(first.degreesOfFreedom) +
           ") = " + fixed(first.chiSquare, 2) + ", CFI = " + fixed(first.cfi, 3) +
           ", RMSEA = " + fixed(first.rmsea, 3) +
           ". By the usual cut-offs the changes in fit are compatible with " + supported +
           " invariance" + (supported == "configural" ? " at most." : ".");
}

std::vector<std::string> cautions() {
    return {
        "Cut-offs for changes in fit are guidance, not tests; a small change does not prove "
        "that items work alike in all groups.",
        "Without scalar invariance, differences between group means of the scale must not be "
        "read as differences in what it measures; without metric invariance, neither must "
        "differences in its relations to other variables.",
        "Modification indices are hints found in these data. Freeing items by them is "
        "exploratory and has to be confirmed on new data.",
        "Residual variances are free in all three models (strict invariance is not tested), so "
        "that scores may be less reliable in one group than in another.",
        "A difference between items across groups says that they work differently, not why."};
}

}  // namespace sorvane::InvarianceWording
