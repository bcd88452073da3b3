#include "SorvaneMac/Screens/Regression/RegressionScreen.h"

#include "SorvaneMac/Screens/Regression/LinearRegression.h"
#include "SorvaneMac/Screens/Regression/PlannedRegression.h"
#include "SorvaneMac/Screens/Seeding.h"

namespace sorvane {

namespace {

constexpr std::size_t seededPredictors = 4;

}  // namespace

RegressionScreen::RegressionScreen(StudioState& state, RegressionFields& fields)
    : AnalysisScreen(StudioScreen::regression, state, fields.regHasRun), fields_(fields) {
    chooseBy("Model", fields.regModel);
    add(std::make_unique<LinearRegression>(state, fields));
    for (const RegressionModel model :
         {RegressionModel::logistic, RegressionModel::poisson, RegressionModel::ordinal}) {
        add(std::make_unique<PlannedRegression>(model, state, fields));
    }
}

void RegressionScreen::seed() {
    const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
    Seeding::fillFirst(fields_.regOutcome, numeric);
    Seeding::fillFirst(fields_.regPredictors,
                       VariableLists::without(numeric, {fields_.regOutcome->name}),
                       seededPredictors);
}

}  // namespace sorvane
