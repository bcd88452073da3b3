#include "SorvaneMac/Screens/Survey/SurveyModelWords.h"

#include <array>

namespace sorvane {

namespace {

/// In the order of the kinds.
constexpr std::array<SurveyModelWords, 4> words = {{
    {.name = "linear",
     .title = "Survey Linear Regression",
     .changed = "",
     .ratioSymbol = "",
     .ratioName = "",
     .answers =
         "How a numeric outcome changes with each predictor in the population, the others held "
         "constant, and how precisely the design lets that be known.",
     .needs = "A numeric outcome, and many more primary sampling units than predictors."},
    {.name = "logistic",
     .title = "Survey Logistic Regression",
     .changed = "the log odds",
     .ratioSymbol = "OR",
     .ratioName = "odds ratio",
     .answers =
         "How the odds of one of two outcomes change with each predictor in the population, the "
         "others held constant.",
     .needs =
         "An outcome with exactly two values, ideally 10 or more cases of the rarer one for each "
         "predictor, and many more primary sampling units than predictors."},
    {.name = "Poisson",
     .title = "Survey Poisson Regression",
     .changed = "the log rate",
     .ratioSymbol = "RR",
     .ratioName = "rate ratio",
     .answers =
         "How the expected count is multiplied by a step of each predictor in the population, the "
         "others held constant.",
     .needs =
         "Whole counts from 0, gathered over equal times or sizes, and many more primary sampling "
         "units than predictors. The counts may vary more than Poisson counts do; the standard "
         "errors allow for that."},
    {.name = "proportional-odds ordinal",
     .title = "Survey Ordinal Regression",
     .changed = "the log odds of a higher level",
     .ratioSymbol = "OR",
     .ratioName = "odds ratio",
     .answers =
         "How the odds of a higher level of an ordered outcome change with each predictor in the "
         "population, the others held constant.",
     .needs =
         "An outcome of three or more ordered levels, coded as numbers in their order, and many "
         "more primary sampling units than predictors."},
}};

}  // namespace

const SurveyModelWords& SurveyModelWords::of(SurveyModelKind kind) {
    return words[static_cast<std::size_t>(kind)];
}

}  // namespace sorvane
