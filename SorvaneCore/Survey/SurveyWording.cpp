#include "SorvaneCore/Survey/SurveyWording.h"

#include <cmath>

#include "SorvaneCore/Numerics/LeadingZero.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

std::string_view displayName(SurveyModelKind kind) {
    switch (kind) {
        case SurveyModelKind::linear:
            return "Linear regression";
        case SurveyModelKind::logistic:
            return "Logistic regression";
        case SurveyModelKind::poisson:
            return "Poisson regression";
        case SurveyModelKind::ordinal:
            return "Ordinal regression";
    }
    return {};
}

}  // namespace sorvane

namespace sorvane::SurveyWording {

namespace {

std::string pText(double p) {
    return std::string("p ") + (p < 0.001 ? "" : "= ") + NumberText::pValue(p);
}

std::string bounded(double value) {
    return NumberText::withoutLeadingZero(NumberText::fixed(value, 3));
}

}  // namespace

std::string otherLength(std::size_t values, std::int64_t rows) {
    return "The variable has " + NumberText::integer(static_cast<std::int64_t>(values)) +
           " rows, but the survey design has " + NumberText::integer(rows) +
           ". Set up the design for the table that holds the variable.";
}

std::string tooFewRows(std::int64_t validN) {
    return "Only " + NumberText::integer(validN) +
           " row(s) hold the value and a weight; at least 2 are needed. Choose a variable with "
           "more answers.";
}

std::string noWeight() {
    return "The denominator adds up to zero, so no ratio can be formed. Choose another "
           "denominator.";
}

std::string noUsableReplicate() {
    return "No replicate gives an estimate of the rows that hold the values, so no standard error "
           "can be formed. Check the replicate weights.";
}

std::string beyondNumbers() {
    return "The values or weights are too large or too small, or a replicate weight is missing, so "
           "the sums cannot be formed. Check the weights, or rescale the variable by a power of "
           "ten.";
}

std::string notZeroOrOne(std::int64_t count) {
    return "A proportion needs a variable coded 0 and 1; " + NumberText::integer(count) +
           " row(s) hold another value. Recode the variable, or estimate its mean.";
}

std::string fewDegreesOfFreedom(std::int64_t df) {
    return "Design degrees of freedom is " + NumberText::integer(df) +
           "; confidence intervals rely on a small-df t reference and are wide.";
}

std::string rowsDropped(std::int64_t rows) {
    return NumberText::integer(rows) +
           " row(s) were dropped because a value was missing; they are treated as if they had not "
           "been sampled.";
}

std::string tooFewRowsForModel(std::int64_t validN, std::int64_t coefficients) {
    return "There are not enough complete rows (" + NumberText::integer(validN) + ") to estimate " +
           NumberText::integer(coefficients) + " coefficient(s).";
}

std::string collinearPredictors() {
    return "A predictor does not vary or is a combination of others, so unique coefficients cannot "
           "be estimated. Remove or combine redundant predictors.";
}

std::string noEstimates(SurveyModelKind kind) {
    return kind == SurveyModelKind::linear
               ? collinearPredictors()
               : "The fit did not converge to finite estimates. This often happens when a "
                 "predictor "
                 "perfectly separates the outcome, or when predictors are nearly collinear.";
}

std::string constantOutcome(SurveyModelKind kind) {
    if (kind == SurveyModelKind::linear) {
        return "The outcome has only one value present. It must vary to fit a linear model.";
    }
    return kind == SurveyModelKind::logistic ? "The outcome has only one level present. Both 0 and "
                                               "1 must occur to fit a logistic "
                                               "model."
                                             : "The outcome has no events (all zeros).";
}

std::string tooFewLevels(std::int64_t levels) {
    return "The outcome has only " + NumberText::integer(levels) +
           " level(s) present. Three or more ordered levels must occur to fit a proportional-odds "
           "model.";
}

std::string fewTestDegreesOfFreedom(std::int64_t df) {
    return "The tests have only " + NumberText::integer(df) +
           " degree(s) of freedom, those of the design less the predictors; they say little, and "
           "intervals are wide.";
}

std::string noDegreesOfFreedom(std::int64_t predictors, std::int64_t designDF) {
    return "The design has " + NumberText::integer(designDF) + " degree(s) of freedom for " +
           NumberText::integer(predictors) +
           " predictor(s), so nothing can be tested. Use fewer predictors.";
}

std::string fewEvents(std::int64_t rarer, std::int64_t predictors) {
    return "The rarer outcome has " + NumberText::integer(rarer) + " cases for " +
           NumberText::integer(predictors) +
           " predictor(s). With fewer than 10 for each, odds ratios tend to be too far from 1 and "
           "their intervals too narrow.";
}

std::string zeroErrors() {
    return "A standard error is zero, as the design compares no PSUs, holds all those of the "
           "population, or the values fit without scatter. It cannot be tested; it does not make "
           "the estimate certain.";
}

std::string tooFewUnitsForWaldTest() {
    return "The predictors cannot be tested together, as the design compares too few PSUs or "
           "replicates for as many. Use fewer predictors.";
}

std::string noErrorForWaldTest() {
    return "The predictors cannot be tested together, as one combination of their effects has no "
           "standard error, or hardly any beside the others, such as the difference of two groups "
           "in each of which the outcome has one value. Combine such groups, or leave a predictor "
           "out.";
}

std::string replicatesWithoutEstimates(std::int64_t replicates) {
    return NumberText::integer(replicates) +
           " replicate(s) gave no estimates and add nothing to the standard errors, which may be "
           "too small.";
}

std::string replicatesWithoutRow(std::int64_t replicates, const std::string& row) {
    return NumberText::integer(replicates) + " replicate(s) give no weight to the row \"" + row +
           "\" and add nothing to the standard errors of the shares within it, which may be too "
           "small.";
}

std::string tooFewPairs(std::int64_t validN) {
    return "Only " + NumberText::integer(validN) +
           " row(s) hold both values and a weight; at least 3 are needed. Choose variables with "
           "more answers.";
}

std::string noVariance() {
    return "One of the variables does not vary, so no correlation can be formed. Choose another "
           "variable.";
}

std::string tooFewCategories(std::int64_t validN) {
    return "Both variables need two or more categories among the " + NumberText::integer(validN) +
           " row(s) that hold both. Choose another variable.";
}

std::string emptyContrasts() {
    return "Too many cells of the table are empty to test it. Combine categories.";
}

std::string noDesignVariance() {
    return "The design gives the cells no variance, so nothing can be tested. Check strata and "
           "clusters.";
}

std::string thinCells(std::int64_t cells) {
    return NumberText::integer(cells) +
           " cell(s) of the table hold fewer than 5 rows; the test is imprecise. Consider "
           "combining "
           "categories.";
}

std::string summary(const SurveyCorrelationResult& result) {
    if (std::isnan(result.r)) {
        return "";
    }
    const std::string found = "In the population that the sample stands for, " + result.xName +
                              " and " + result.yName +
                              " correlate by an estimated r = " + bounded(result.r) + " (SE " +
                              bounded(result.standardError) + ")";
    if (std::isnan(result.t)) {
        return found + ", which cannot be tested.";
    }
    return found + ", t(" + NumberText::integer(result.designDegreesOfFreedom) +
           ") = " + NumberText::fixed(result.t, 2) + ", " + pText(result.pValue) + ".";
}

std::string summary(const SurveyCategoricalResult& result) {
    if (std::isnan(result.fStatistic)) {
        return "";
    }
    return "The association of " + result.rowName + " and " + result.columnName +
           " was tested with the Rao-Scott second-order correction: F(" +
           NumberText::fixed(result.dfNumerator, 2) + ", " +
           NumberText::fixed(result.dfDenominator, 2) +
           ") = " + NumberText::fixed(result.fStatistic, 2) + ", " + pText(result.pValue) +
           "; Cramer's V = " + bounded(result.cramersV) + ".";
}

std::vector<std::string> cautions(SurveyModelKind kind) {
    std::vector<std::string> all = {
        "Standard errors hold for the design as given; wrong or missing strata and clusters make "
        "them wrong.",
        "Coefficients describe the population that the weights stand for; they are association, "
        "not causation.",
        "Rows that were dropped for missing values are treated as not sampled; that misleads where "
        "answers are missing for a reason."};
    if (kind == SurveyModelKind::logistic || kind == SurveyModelKind::ordinal) {
        all.emplace_back("An odds ratio is not a ratio of probabilities.");
    }
    if (kind == SurveyModelKind::poisson) {
        all.emplace_back(
            "Rate ratios compare counts gathered over equal times or sizes; the model does not "
            "allow for unequal ones.");
    }
    if (kind == SurveyModelKind::ordinal) {
        all.push_back(
            "The predictor effects are taken as the same across every cut point; that "
            "assumption is not tested here.");
    }
    if (kind != SurveyModelKind::linear) {
        all.push_back(
            "Likelihood-based comparisons (AIC, likelihood-ratio tests) do not hold under "
            "a sampling design and are not given.");
    }
    return all;
}

std::vector<std::string> correlationCautions() {
    return {
        "Standard errors hold for the design as given; wrong or missing strata and clusters "
        "make them wrong.",
        "A correlation is association, not causation, and tells of straight-line relations "
        "alone."};
}

std::vector<std::string> tableCautions() {
    return {
        "The plain chi-square of weighted counts must not be referred to its own distribution; "
        "report the corrected F.",
        "A significant test says that the two variables hang together somewhere in the table, not "
        "in which cells, and not how strongly.",
        "An association in the table is not causation."};
}

}  // namespace sorvane::SurveyWording
