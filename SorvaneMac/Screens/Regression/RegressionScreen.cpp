#include "SorvaneMac/Screens/Regression/RegressionScreen.h"

#include "SorvaneMac/Screens/Regression/RegressionAnalyses.h"
#include "SorvaneMac/Screens/Seeding.h"

namespace sorvane {

namespace {

constexpr std::size_t seededPredictors = 4;

}  // namespace

RegressionScreen::RegressionScreen(StudioState& state, RegressionFields& fields)
    : AnalysisScreen(StudioScreen::regression, state, fields.regHasRun), fields_(fields) {
    chooseBy("Model", fields.regModel);
    add(RegressionAnalyses::linear(state, fields));
    add(RegressionAnalyses::logistic(state, fields));
    add(RegressionAnalyses::poisson(state, fields));
    add(RegressionAnalyses::ordinal(state, fields));
}

void RegressionScreen::seed() {
    const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
    Seeding::fillFirst(fields_.regOutcome, numeric);
    Seeding::fillFirst(fields_.regPredictors,
                       VariableLists::without(numeric, {fields_.regOutcome->name}),
                       seededPredictors);
}

}  // namespace sorvane
