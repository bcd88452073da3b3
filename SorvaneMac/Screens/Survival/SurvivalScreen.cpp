#include "SorvaneMac/Screens/Survival/SurvivalScreen.h"

#include <algorithm>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SuitedVariables.h"
#include "SorvaneMac/Screens/Survival/SurvivalAnalyses.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;
using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

/// The two-valued numbers, those that name a death first.
List eventCandidates(const List& numeric) {
    List events = SuitedVariables::twoValued(numeric);
    std::stable_partition(events.begin(), events.end(), [](const DataVariable* variable) {
        return UnicodeText::lowerCased(variable->name).find("dead") != std::string::npos;
    });
    return events;
}

}  // namespace

SurvivalScreen::SurvivalScreen(StudioState& state, SurvivalFields& fields)
    : AnalysisScreen(StudioScreen::survival, state, fields.survHasRun),
      fields_(fields),
      strataSeed_(state.fields, fields.survGroup, fields.survHasRun) {
    chooseBy("Analysis", fields.survMode);
    add(SurvivalAnalyses::kaplanMeier(state, fields));
    add(SurvivalAnalyses::coxRegression(state, fields));
}

void SurvivalScreen::seed() {
    const List numeric = numericVariables(state_.dataset());
    Seeding::fillFirst(fields_.survTime,
                       SuitedVariables::named(
                           numeric, {"time", "futime", "survtime", "survival", "duration", "tenure",
                                     "followup", "days", "weeks", "months", "years"}));
    NameSet taken = {fields_.survTime->name};
    Seeding::fillFirst(fields_.survEvent, eventCandidates(without(numeric, taken)));
    taken.insert(fields_.survEvent->name);
    Seeding::fillFirst(fields_.survPredictors, without(numeric, taken), numeric.size());
    if (strataSeed_.isOpen()) {
        const List groups = without(anovaGroupingVariables(state_.dataset()), taken);
        Seeding::fillFirst(fields_.survGroup, without(groups, fields_.survPredictors.get()));
    }
}

}  // namespace sorvane
