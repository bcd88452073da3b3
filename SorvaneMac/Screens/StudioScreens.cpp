#include "SorvaneMac/Screens/StudioScreens.h"

#include <nlohmann/json.hpp>

#include "SorvaneMac/Screens/CategoricalTestsScreen.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansScreen.h"
#include "SorvaneMac/Screens/CorrelationScreen.h"
#include "SorvaneMac/Screens/DataPreviewScreen.h"
#include "SorvaneMac/Screens/DataQuality/DataQualityScreen.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionScreen.h"
#include "SorvaneMac/Screens/DescriptivesScreen.h"
#include "SorvaneMac/Screens/ExportScreen.h"
#include "SorvaneMac/Screens/FindingsScreen.h"
#include "SorvaneMac/Screens/GroupPatternsScreen.h"
#include "SorvaneMac/Screens/ImportDataScreen.h"
#include "SorvaneMac/Screens/InstrumentMapScreen.h"
#include "SorvaneMac/Screens/Invariance/InvarianceScreen.h"
#include "SorvaneMac/Screens/LatentClass/LatentClassScreen.h"
#include "SorvaneMac/Screens/Mediation/MediationScreen.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelScreen.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateScreen.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricScreen.h"
#include "SorvaneMac/Screens/OverviewScreen.h"
#include "SorvaneMac/Screens/PrepareDataScreen.h"
#include "SorvaneMac/Screens/Regression/RegressionScreen.h"
#include "SorvaneMac/Screens/RelationshipsScreen.h"
#include "SorvaneMac/Screens/ReliabilityScreen.h"
#include "SorvaneMac/Screens/ScreenFields.h"
#include "SorvaneMac/Screens/Structural/StructuralScreen.h"
#include "SorvaneMac/Screens/Survey/SurveyScreen.h"
#include "SorvaneMac/Screens/Survey/SurveyWeights.h"
#include "SorvaneMac/Screens/Survival/SurvivalScreen.h"
#include "SorvaneMac/Screens/TechnicalAppendixScreen.h"
#include "SorvaneMac/Screens/UserGuideScreen.h"
#include "SorvaneMac/Screens/VariableTypesScreen.h"

namespace sorvane {

namespace {

/// Whether the screen gives weighted figures, and says itself which are not.
bool takesWeights(StudioScreen id) {
    return id == StudioScreen::survey || id == StudioScreen::descriptives;
}

}  // namespace

StudioScreens::StudioScreens(StudioState& state)
    : ownFields_(std::make_unique<ScreenFields>(state.fields)), fields(*ownFields_), state_(state) {
    const auto add = [this](std::unique_ptr<Screen> screen) {
        const StudioScreen id = screen->id();
        screens_.emplace(id, std::move(screen));
    };
    add(std::make_unique<OverviewScreen>(state));
    add(std::make_unique<ImportDataScreen>(state));
    add(std::make_unique<DataPreviewScreen>(state));
    add(std::make_unique<InstrumentMapScreen>(state));
    add(std::make_unique<VariableTypesScreen>(state));
    add(std::make_unique<ReliabilityScreen>(state));
    add(std::make_unique<DescriptivesScreen>(state, fields.descriptives, fields.survey));
    add(std::make_unique<CompareMeansScreen>(state, fields.compareMeans));
    add(std::make_unique<CorrelationScreen>(state, fields.correlation));
    add(std::make_unique<RegressionScreen>(state, fields.regression));
    add(std::make_unique<NonparametricScreen>(state, fields.nonparametric));
    add(std::make_unique<DataReductionScreen>(state, fields.dataReduction));
    add(std::make_unique<MultivariateScreen>(state, fields.multivariate));
    add(std::make_unique<GroupPatternsScreen>(state));
    add(std::make_unique<RelationshipsScreen>(state, fields.correlation));
    add(std::make_unique<CategoricalTestsScreen>(state, fields.nonparametric));
    add(std::make_unique<PrepareDataScreen>(state, fields));
    add(std::make_unique<DataQualityScreen>(state));
    add(std::make_unique<StructuralScreen>(state, fields.structural));
    add(std::make_unique<SurveyScreen>(state, fields.survey));
    add(std::make_unique<MultilevelScreen>(state, fields.multilevel));
    add(std::make_unique<LatentClassScreen>(state, fields.latentClass));
    add(std::make_unique<SurvivalScreen>(state, fields.survival));
    add(std::make_unique<MediationScreen>(state, fields.mediation));
    add(std::make_unique<InvarianceScreen>(state, fields.invariance));
    add(std::make_unique<FindingsScreen>(state));
    add(std::make_unique<TechnicalAppendixScreen>(state));
    add(std::make_unique<ExportScreen>(state));
    add(std::make_unique<UserGuideScreen>());
}

StudioScreens::~StudioScreens() = default;

bool StudioScreens::areWeightsActive() const {
    return fields.survey.surveyWeightsActive.get();
}

const ScreenContent& StudioScreens::content(StudioScreen id) {
    const auto [entry, isNew] = kept_.try_emplace(id);
    KeptContent& kept = entry->second;
    if (isNew || !kept.reads.areCurrent()) {
        kept.reads = state_.fields.recordReads([&] {
            kept.content = at(id).content();
            if (areWeightsActive() && !takesWeights(id)) {
                SurveyWeights::sayUnweighted(kept.content);
            }
        });
    }
    return kept.content;
}

void StudioScreens::follow(const ScreenLink& link) {
    for (const auto& [name, value] : link.settings) {
        state_.fields.find(name)->setJson(Json::parse(value));
    }
    state_.selection.set(link.screen);
    if (link.runs) {
        at(link.screen).run();
    }
}

}  // namespace sorvane
