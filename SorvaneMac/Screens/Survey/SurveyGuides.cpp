#include "SorvaneMac/Screens/Survey/SurveyGuides.h"

#include <string>
#include <string_view>

#include "SorvaneCore/Survey/SurveyWording.h"
#include "SorvaneMac/Screens/Survey/SurveyModelWords.h"

namespace sorvane::SurveyGuides {

namespace {

constexpr std::string_view designNeeds =
    " The sampling weights that came with the survey, with its strata and primary sampling units "
    "or its replicate weights. Predictors are taken as numbers: a variable of unordered categories "
    "needs a 0/1 variable for each category but one, made in Prepare Data.";

}  // namespace

Guide ofModel(SurveyModelKind model) {
    const SurveyModelWords& words = SurveyModelWords::of(model);
    return {.answers = std::string(words.answers),
            .needs = std::string(words.needs) + std::string(designNeeds),
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
