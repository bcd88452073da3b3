#include "SorvaneMac/Screens/Survey/SurveyScreen.h"

#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SuitedVariables.h"
#include "SorvaneMac/Screens/Survey/SurveyAnalyses.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"
#include "SorvaneMac/Screens/Survey/SurveyModelSelection.h"

namespace sorvane {

using VariableLists::List;
using VariableLists::numericVariables;
using VariableLists::without;

SurveyScreen::SurveyScreen(StudioState& state, SurveyFields& fields)
    : AnalysisScreen(StudioScreen::survey, state, fields.svHasRun),
      fields_(fields),
      strataSeed_(state.fields, fields.svStrata, fields.svHasRun),
      clusterSeed_(state.fields, fields.svCluster, fields.svHasRun) {
    followChoice(fields.models.svAnalysis);
    add(SurveyAnalyses::estimates(state, fields));
    for (const SurveyModelKind kind : {SurveyModelKind::linear, SurveyModelKind::logistic,
                                       SurveyModelKind::poisson, SurveyModelKind::ordinal}) {
        add(SurveyAnalyses::model(kind, state, fields));
    }
    add(SurveyAnalyses::correlation(state, fields));
    add(SurveyAnalyses::crosstab(state, fields));
}

void SurveyScreen::seed() {
    const ImportedDataset& dataset = state_.dataset();
    List weights = SuitedVariables::named(
        SurveyColumns::possibleWeights(dataset),
        {"weight", "weights", "wt", "wgt", "pweight", "pw", "sampweight", "svyweight"});
    std::erase_if(weights, [](const DataVariable* variable) {
        return !SurveyColumns::isPositive(*variable);
    });
    Seeding::fillFirst(fields_.svWeight, weights);
    NameSet taken = {fields_.svWeight->name};
    Seeding::fillFirst(fields_.svVar, without(numericVariables(dataset), taken));
    taken.insert(fields_.svVar->name);
    const List labels = SurveyColumns::possibleLabels(dataset);
    if (strataSeed_.isOpen()) {
        Seeding::fillFirst(fields_.svStrata,
                           SuitedVariables::named(without(labels, taken), {"stratum", "strata"}));
    }
    taken.insert(fields_.svStrata->name);
    if (clusterSeed_.isOpen()) {
        Seeding::fillFirst(fields_.svCluster,
                           SuitedVariables::named(without(labels, taken), {"psu", "cluster"}));
    }
    SurveyModelSelection::seed(dataset, fields_);
}

}  // namespace sorvane
