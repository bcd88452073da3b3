#include "SorvaneMac/Screens/Mediation/MediationScreen.h"

#include "SorvaneMac/Screens/Mediation/MediationAnalyses.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

MediationScreen::MediationScreen(StudioState& state, MediationFields& fields)
    : AnalysisScreen(StudioScreen::mediation, state, fields.medHasRun), fields_(fields) {
    chooseBy("Analysis", fields.medMode);
    add(MediationAnalyses::simpleMediation(state, fields));
    add(MediationAnalyses::moderation(state, fields));
}

void MediationScreen::seed() {
    const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
    NameSet taken = {fields_.medX->name, fields_.medY->name, fields_.medM->name,
                     fields_.medW->name};
    for (Field<VariableName>* field :
         {&fields_.medX, &fields_.medY, &fields_.medM, &fields_.medW}) {
        Seeding::fillFirst(*field, VariableLists::without(numeric, taken));
        taken.insert(field->get().name);
    }
}

}  // namespace sorvane
