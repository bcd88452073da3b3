#include "SorvaneMac/Screens/Nonparametric/NonparametricScreen.h"

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricAnalyses.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricGates.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;

NonparametricScreen::NonparametricScreen(StudioState& state, NonparametricFields& fields)
    : AnalysisScreen(StudioScreen::nonparametric, state, fields.npHasRun), fields_(fields) {
    chooseBy("Test", fields.npTest);
    add(NonparametricAnalyses::mannWhitney(state, fields));
    add(NonparametricAnalyses::wilcoxonSignedRank(state, fields));
    add(NonparametricAnalyses::kruskalWallis(state, fields));
    add(NonparametricAnalyses::friedman(state, fields));
    add(NonparametricAnalyses::chiSquareIndependence(state, fields));
    add(NonparametricAnalyses::chiSquareFit(state, fields));
    add(NonparametricAnalyses::fisherExact(state, fields));
    add(NonparametricAnalyses::mcNemar(state, fields));
}

void npSeed(NonparametricFields& fields, const ImportedDataset& dataset) {
    const VariableLists::List numeric = numericVariables(dataset);
    const VariableLists::List groupings = anovaGroupingVariables(dataset);
    Seeding::fillFirst(fields.npOutcome, numeric);
    Seeding::fillFirst(fields.npGroup, VariableLists::without(groupings, {fields.npOutcome->name}));
    Categories::fillPair(fields.npG1, fields.npG2, Categories::of(dataset, fields.npGroup->name));
    Seeding::fillFirst(fields.npBefore, VariableLists::without(numeric, {fields.npAfter->name}));
    Seeding::fillFirst(fields.npAfter, VariableLists::without(numeric, {fields.npBefore->name}));
    Seeding::fillFirst(fields.npRowCat, VariableLists::without(groupings, {fields.npColCat->name}));
    Seeding::fillFirst(fields.npColCat, VariableLists::without(groupings, {fields.npRowCat->name}));
    Seeding::fillFirst(fields.npGoFVar, groupings);
    Seeding::fillFirst(fields.npFriedmanItems, numeric, fewestFriedmanItems);
}

}  // namespace sorvane
