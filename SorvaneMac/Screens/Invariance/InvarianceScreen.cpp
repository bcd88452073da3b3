#include "SorvaneMac/Screens/Invariance/InvarianceScreen.h"

#include "SorvaneMac/Screens/Invariance/InvarianceAnalysis.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SuitedVariables.h"

namespace sorvane {

namespace {

constexpr std::size_t seededItems = 8;

}  // namespace

InvarianceScreen::InvarianceScreen(StudioState& state, InvarianceFields& fields)
    : AnalysisScreen(StudioScreen::invariance, state, fields.invHasRun), fields_(fields) {
    add(invarianceAnalysis(state, fields));
}

void InvarianceScreen::seed() {
    Seeding::fillFirst(
        fields_.invItems,
        SuitedVariables::withFewCategories(SuitedVariables::analyzed(state_.dataset())),
        seededItems);
    Seeding::fillFirst(
        fields_.invGroup,
        VariableLists::without(VariableLists::anovaGroupingVariables(state_.dataset()),
                               fields_.invItems.get()));
}

}  // namespace sorvane
