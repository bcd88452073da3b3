#include "SorvaneMac/Screens/Survey/SurveyGuides.h"

#include <string>
#include <string_view>

#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane::SurveyGuides {

namespace {

constexpr std::string_view designNeeds =
    " The sampling weights that came with the survey, with its strata and primary sampling units "
    "or its replicate weights. Predictors are taken as numbers: a variable of unordered categories "
    "needs a 0/1 variable for each category but one, made in Prepare Data.";

std::string answers(SurveyModelKind model) {
    switch (model) {
        case SurveyModelKind::linear:
            return "How a numeric outcome changes with each predictor in the population, the "
                   "others held constant, and how precisely the design lets that be known.";
        case SurveyModelKind::logistic:
            return "How the odds of one of two outcomes change with each predictor in the "
                   "population, the others held constant.";
        case SurveyModelKind::poisson:
            return "How the expected count is multiplied by a step of each predictor in the "
                   "population, the others held constant.";
        case SurveyModelKind::ordinal:
            break;
    }
    return "How the odds of a higher level of an ordered outcome change with each predictor in "
           "the population, the others held constant.";
}

std::string needs(SurveyModelKind model) {
    switch (model) {
        case SurveyModelKind::linear:
            return "A numeric outcome, and many more primary sampling units than predictors.";
        case SurveyModelKind::logistic:
            return "An outcome with exactly two values, ideally 10 or more cases of the rarer one "
                   "for each predictor, and many more primary sampling units than predictors.";
        case SurveyModelKind::poisson:
            return "Whole counts from 0, gathered over equal times or sizes, and many more primary "
                   "sampling units than predictors. The counts may vary more than Poisson counts "
                   "do; the standard errors allow for that.";
        case SurveyModelKind::ordinal:
            break;
    }
    return "An outcome of three or more ordered levels, coded as numbers in their order, and many "
           "more primary sampling units than predictors.";
}

}  // namespace

Guide ofModel(SurveyModelKind model) {
    return {.answers = answers(model),
            .needs = needs(model) + std::string(designNeeds),
            .doNotClaim = SurveyWording::cautions(model)};
}

Guide ofCorrelation() {
    return {.answers =
                "How closely numeric variables move together, as a straight line, in the "
                "population that the sample stands for.",
            .needs =
                "At least two numeric variables, and the sampling weights that came with the "
                "survey, with its strata and primary sampling units or its replicate weights.",
            .doNotClaim = SurveyWording::correlationCautions()};
}

Guide ofCrosstab() {
    return {.answers =
                "How the categories of one variable are shared out among those of another in the "
                "population, and whether the two hang together at all.",
            .needs =
                "Two variables of a few categories, ideally with 5 or more cases in each cell, and "
                "the sampling weights that came with the survey, with its strata and primary "
                "sampling units or its replicate weights.",
            .doNotClaim = SurveyWording::tableCautions()};
}

}  // namespace sorvane::SurveyGuides
