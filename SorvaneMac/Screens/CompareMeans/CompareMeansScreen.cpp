#include "SorvaneMac/Screens/CompareMeans/CompareMeansScreen.h"

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansAnalyses.h"
#include "SorvaneMac/Screens/Seeding.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;

/// As many conditions as make the test of sphericity meaningful.
constexpr std::size_t seededConditions = 3;

}  // namespace

CompareMeansScreen::CompareMeansScreen(StudioState& state, CompareMeansFields& fields)
    : AnalysisScreen(StudioScreen::inferential, state, fields.cmHasRun), fields_(fields) {
    chooseBy("Test", fields.cmTest);
    add(CompareMeansAnalyses::independentTTest(state, fields));
    add(CompareMeansAnalyses::pairedTTest(state, fields));
    add(CompareMeansAnalyses::oneWayAnova(state, fields));
    add(CompareMeansAnalyses::factorialAnova(state, fields));
    add(CompareMeansAnalyses::repeatedMeasures(state, fields));
    add(CompareMeansAnalyses::ancova(state, fields));
}

void CompareMeansScreen::cmSeedDefaults() {
    const ImportedDataset& dataset = state_.dataset();
    const VariableLists::List numeric = numericVariables(dataset);
    Seeding::fillFirst(fields_.cmOutcome, numeric);
    Seeding::fillFirst(fields_.cmGrouping, VariableLists::without(anovaGroupingVariables(dataset),
                                                                  {fields_.cmOutcome->name}));
    Categories::refillPair(fields_.cmGroup1, fields_.cmGroup2,
                           Categories::of(dataset, fields_.cmGrouping->name));
    Seeding::fillFirst(fields_.rmColumns, numeric, seededConditions);
}

VariableLists::List cmAncovaCovariateCandidates(const ImportedDataset& dataset,
                                                const CompareMeansFields& fields) {
    return VariableLists::without(numericVariables(dataset),
                                  {fields.cmAncovaOutcome->name, fields.cmAncovaGroup->name});
}

}  // namespace sorvane
