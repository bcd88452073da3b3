#include "SorvaneMac/Screens/Multilevel/MultilevelScreen.h"

#include "SorvaneMac/Screens/Multilevel/MultilevelAnalyses.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelSelection.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SuitedVariables.h"

namespace sorvane {

using VariableLists::anovaGroupingVariables;
using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

MultilevelScreen::MultilevelScreen(StudioState& state, MultilevelFields& fields)
    : AnalysisScreen(StudioScreen::multilevel, state, fields.mlHasRun),
      fields_(fields),
      predictorSeed_(state.fields, fields.mlPredictors, fields.mlHasRun),
      messageClearing_(MultilevelSelection::clearMessageOnChange(state.fields, fields)) {
    const auto drop = [&fields] {
        MultilevelSelection::dropForbiddenSlope(fields);
    };
    offer([&fields, drop] {
        return OptionControls::followedBy(
            FormControls::enumerationPicker("Structure", fields.mlStructure), drop);
    });
    chooseBy("Outcome family", fields.mlFamily, drop);
    add(MultilevelAnalyses::mixedModel(state, fields, MultilevelFamily::gaussian));
    add(MultilevelAnalyses::mixedModel(state, fields, MultilevelFamily::binomial));
    add(MultilevelAnalyses::mixedModel(state, fields, MultilevelFamily::poisson));
    add(MultilevelAnalyses::ordinalModel(state, fields));
}

void MultilevelScreen::seed() {
    const List numeric = numericVariables(state_.dataset());
    Seeding::fillFirst(fields_.mlOutcome, numeric);
    NameSet taken = {fields_.mlOutcome->name};
    const List groups = anovaGroupingVariables(state_.dataset());
    Seeding::fillFirst(fields_.mlCluster, without(groups, taken));
    taken.insert(fields_.mlCluster->name);
    Seeding::fillFirst(fields_.mlCluster2, without(groups, taken));
    taken.insert(fields_.mlCluster2->name);
    Seeding::fillFirst(fields_.mlTime, SuitedVariables::named(
                                           without(numeric, taken),
                                           {"time", "timepoint", "wave", "occasion", "visit",
                                            "week", "month", "year", "day", "session", "trial"}));
    taken.insert(fields_.mlTime->name);
    if (predictorSeed_.isOpen()) {
        Seeding::fillFirst(fields_.mlPredictors, without(numeric, taken), numeric.size());
    }
    MultilevelSelection::selectSlope(state_.dataset(), fields_);
    MultilevelSelection::dropForbiddenSlope(fields_);
}

}  // namespace sorvane
