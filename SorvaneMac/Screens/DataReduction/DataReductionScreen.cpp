#include "SorvaneMac/Screens/DataReduction/DataReductionScreen.h"

#include "SorvaneMac/Screens/DataReduction/DataReductionAnalyses.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

constexpr std::size_t seededItems = 4;

}  // namespace

DataReductionScreen::DataReductionScreen(StudioState& state, DataReductionFields& fields)
    : AnalysisScreen(StudioScreen::dataReduction, state, fields.drHasRun), fields_(fields) {
    chooseBy("Method", fields.drMethod);
    add(DataReductionAnalyses::principalComponents(state, fields));
    add(DataReductionAnalyses::factorAnalysis(state, fields));
    add(DataReductionAnalyses::omega(state, fields));
    add(DataReductionAnalyses::kMeansClusters(state, fields));
    add(DataReductionAnalyses::hierarchicalClusters(state, fields));
}

void DataReductionScreen::seed() {
    Seeding::fillFirst(fields_.drItems, VariableLists::numericVariables(state_.dataset()),
                       seededItems);
}

}  // namespace sorvane
