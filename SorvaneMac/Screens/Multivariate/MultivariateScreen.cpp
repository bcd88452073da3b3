#include "SorvaneMac/Screens/Multivariate/MultivariateScreen.h"

#include "SorvaneMac/Screens/Multivariate/GroupedOutcomes.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateAnalyses.h"
#include "SorvaneMac/Screens/Seeding.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;

constexpr std::size_t seededVariables = 2;

}  // namespace

MultivariateScreen::MultivariateScreen(StudioState& state, MultivariateFields& fields)
    : AnalysisScreen(StudioScreen::multivariate, state, fields.mvHasRun), fields_(fields) {
    chooseBy("Test", fields.mvTest);
    add(MultivariateAnalyses::manova(state, fields));
    add(MultivariateAnalyses::discriminant(state, fields));
    add(MultivariateAnalyses::canonicalCorrelation(state, fields));
}

void MultivariateScreen::seed() {
    const VariableLists::List numeric = numericVariables(state_.dataset());
    Seeding::fillFirst(fields_.mvGroup, anovaGroupingVariables(state_.dataset()));
    Seeding::fillFirst(fields_.mvVars, GroupedOutcomes::candidates(state_.dataset(), fields_),
                       seededVariables);
    Seeding::fillFirst(fields_.mvSetX, VariableLists::without(numeric, fields_.mvSetY.get()),
                       seededVariables);
    Seeding::fillFirst(fields_.mvSetY, VariableLists::without(numeric, fields_.mvSetX.get()),
                       seededVariables);
}

}  // namespace sorvane
