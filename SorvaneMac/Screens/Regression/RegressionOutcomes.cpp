#include "SorvaneMac/Screens/Regression/RegressionOutcomes.h"

#include <optional>

#include "SorvaneCore/Dataset/ColumnProfile.h"

namespace sorvane::RegressionOutcomes {

namespace {

constexpr std::int64_t binaryLevels = 2;
constexpr std::int64_t fewestOrderedLevels = 3;
/// Beyond these a variable is a measure; the model would take minutes.
constexpr std::int64_t mostOrderedLevels = 100;

bool hasWholeCounts(const ImportedDataset& dataset, const DataVariable& variable) {
    const std::optional<std::size_t> index = dataset.columnIndex(variable.name);
    return index && variable.numericSummary->minimum >= 0.0 &&
           !dataset.rows.column(*index).profile().hasFraction;
}

bool suits(const ImportedDataset& dataset, RegressionModel model, const DataVariable& variable) {
    switch (model) {
        case RegressionModel::linear:
            return VariableLists::isNumericForAnalysis(variable);
        case RegressionModel::logistic:
            return variable.uniqueCount == binaryLevels &&
                   !isIgnoredForAnalysis(variable.assignedType);
        case RegressionModel::poisson:
            return VariableLists::isNumericForAnalysis(variable) &&
                   hasWholeCounts(dataset, variable);
        case RegressionModel::ordinal:
            return VariableLists::isNumericForAnalysis(variable) &&
                   variable.uniqueCount >= fewestOrderedLevels &&
                   variable.uniqueCount <= mostOrderedLevels;
    }
    return false;
}

std::string_view unsuitableTitle(RegressionModel model) {
    switch (model) {
        case RegressionModel::linear:
            return "Need a numeric outcome and predictor";
        case RegressionModel::logistic:
            return "Need an outcome with two values";
        case RegressionModel::poisson:
            return "Need an outcome of counts";
        case RegressionModel::ordinal:
            return "Need an outcome of ordered levels";
    }
    return {};
}

Guide linearGuide() {
    return {.answers =
                "How a numeric outcome changes with each predictor while the others are "
                "held constant, and how much of its variance they explain together.",
            .needs =
                "More cases than coefficients, ideally 10 or more cases per predictor, and "
                "predictors that are not copies or sums of one another.",
            .doNotClaim = {"Do not claim causation from a regression on observed data.",
                           "Do not compare unstandardized coefficients of different units.",
                           "Do not extrapolate beyond the values observed."}};
}

Guide logisticGuide() {
    return {.answers =
                "How the odds of one of two outcomes change with each predictor while the others "
                "are held constant.",
            .needs =
                "An outcome with exactly two values, both of which occur, and ideally 10 or more "
                "cases of the rarer one for each predictor. A predictor that splits the outcome "
                "perfectly cannot be estimated.",
            .doNotClaim = {"Do not claim causation from a regression on observed data.",
                           "Do not read an odds ratio as a ratio of probabilities.",
                           "Do not read McFadden's R² as explained variance."}};
}

Guide poissonGuide() {
    return {.answers =
                "How the expected count, such as visits or errors, is multiplied by a step of "
                "each predictor while the others are held constant.",
            .needs =
                "An outcome of whole counts from 0, gathered over equal times or sizes, and "
                "ideally 10 or more cases per predictor. The variance should be near the mean.",
            .doNotClaim = {"Do not claim causation from a regression on observed data.",
                           "Do not trust the standard errors where the counts vary more than "
                           "their mean: they are too small then.",
                           "Do not use it for a rating or a score; those are not counts."}};
}

Guide ordinalGuide() {
    return {.answers =
                "How the odds of a higher level of an ordered outcome change with each predictor "
                "while the others are held constant.",
            .needs =
                "An outcome of three or more ordered levels, coded as numbers in their order, "
                "each with a fair number of cases, and more cases than parameters.",
            .doNotClaim = {"Do not claim causation from a regression on observed data.",
                           "Do not read the one odds ratio per predictor without care: it is "
                           "assumed to be the same at every cut point, and that is not tested.",
                           "Do not treat the levels as equally far apart."}};
}

}  // namespace

VariableLists::List candidates(const ImportedDataset& dataset, RegressionModel model) {
    VariableLists::List list;
    for (const DataVariable& variable : dataset.variables) {
        if (suits(dataset, model, variable)) {
            list.push_back(&variable);
        }
    }
    return list;
}

std::string_view requirement(RegressionModel model) {
    switch (model) {
        case RegressionModel::linear:
            return {};
        case RegressionModel::logistic:
            return "The outcome has exactly two values, such as no and yes.";
        case RegressionModel::poisson:
            return "The outcome counts something: whole numbers from 0.";
        case RegressionModel::ordinal:
            return "The outcome has 3 to 100 levels, coded as numbers in their order.";
    }
    return {};
}

std::optional<Gate> unsuitable(const ImportedDataset& dataset,
                               RegressionModel model,
                               const std::string& outcome) {
    const DataVariable* variable = dataset.variable(outcome);
    if (variable && suits(dataset, model, *variable)) {
        return std::nullopt;
    }
    std::string text = "Confirm a numeric outcome and predictor in Variable Roles.";
    if (model != RegressionModel::linear) {
        text = std::string(requirement(model)) + " Pick one in the Setup panel.";
    }
    return Gate{
        .title = std::string(unsuitableTitle(model)), .lead = outcome, .text = std::move(text)};
}

Guide guideOf(RegressionModel model) {
    switch (model) {
        case RegressionModel::linear:
            return linearGuide();
        case RegressionModel::logistic:
            return logisticGuide();
        case RegressionModel::poisson:
            return poissonGuide();
        case RegressionModel::ordinal:
            return ordinalGuide();
    }
    return {};
}

}  // namespace sorvane::RegressionOutcomes
