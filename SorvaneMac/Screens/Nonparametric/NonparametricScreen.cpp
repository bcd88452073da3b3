#include "SorvaneMac/Screens/Nonparametric/NonparametricScreen.h"

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/Nonparametric/ChiSquareFit.h"
#include "SorvaneMac/Screens/Nonparametric/ChiSquareIndependence.h"
#include "SorvaneMac/Screens/Nonparametric/FisherExact.h"
#include "SorvaneMac/Screens/Nonparametric/Friedman.h"
#include "SorvaneMac/Screens/Nonparametric/KruskalWallis.h"
#include "SorvaneMac/Screens/Nonparametric/MannWhitney.h"
#include "SorvaneMac/Screens/Nonparametric/McNemar.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricGates.h"
#include "SorvaneMac/Screens/Nonparametric/WilcoxonSignedRank.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;

NonparametricScreen::NonparametricScreen(StudioState& state, NonparametricFields& fields)
    : AnalysisScreen(StudioScreen::nonparametric, state, fields.npHasRun), fields_(fields) {
    chooseBy("Test", fields.npTest);
    add(std::make_unique<MannWhitney>(state, fields));
    add(std::make_unique<WilcoxonSignedRank>(state, fields));
    add(std::make_unique<KruskalWallis>(state, fields));
    add(std::make_unique<Friedman>(state, fields));
    add(std::make_unique<ChiSquareIndependence>(state, fields));
    add(std::make_unique<ChiSquareFit>(state, fields));
    add(std::make_unique<FisherExact>(state, fields));
    add(std::make_unique<McNemar>(state, fields));
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
