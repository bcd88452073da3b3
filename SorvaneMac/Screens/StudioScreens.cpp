#include "SorvaneMac/Screens/StudioScreens.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "SorvaneMac/Screens/CorrelationScreen.h"
#include "SorvaneMac/Screens/DataPreviewScreen.h"
#include "SorvaneMac/Screens/DescriptivesScreen.h"
#include "SorvaneMac/Screens/ExportScreen.h"
#include "SorvaneMac/Screens/FindingsScreen.h"
#include "SorvaneMac/Screens/ImportDataScreen.h"
#include "SorvaneMac/Screens/InstrumentMapScreen.h"
#include "SorvaneMac/Screens/LaterScreen.h"
#include "SorvaneMac/Screens/OverviewScreen.h"
#include "SorvaneMac/Screens/RegressionScreen.h"
#include "SorvaneMac/Screens/ReliabilityScreen.h"
#include "SorvaneMac/Screens/UserGuideScreen.h"
#include "SorvaneMac/Screens/VariableTypesScreen.h"

namespace sorvane {

namespace {

/// What stands around a screen and not on it; an analysis of a million rows need not run again
/// because a note was typed.
constexpr std::array<std::string_view, 11> frameFields = {
    "selection",          "inspectorTab",          "inspectorPane", "researcherNotes",
    "selectedDatasetRow", "selectedDatasetColumn", "importError",   "projectMessage",
    "projectError",       "saveStatusMessage",     "computingLabel"};

constexpr std::array<std::string_view, 2> reportFields = {"reportItems", "reportRTFData"};

template <typename Names>
bool isListed(const Names& names, const AnyField& field) {
    return std::find(names.begin(), names.end(), field.name()) != names.end();
}

bool showsReport(StudioScreen id) {
    return id == StudioScreen::overview || section(id) == StudioSection::report;
}

}  // namespace

StudioScreens::StudioScreens(StudioState& state) : fields(state.fields), state_(state) {
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
    add(std::make_unique<DescriptivesScreen>(state));
    add(std::make_unique<CorrelationScreen>(state, fields.correlation));
    add(std::make_unique<RegressionScreen>(state, fields.regression));
    add(std::make_unique<FindingsScreen>(state));
    add(std::make_unique<ExportScreen>(state));
    add(std::make_unique<UserGuideScreen>());
    for (const StudioScreen id : allStudioScreens()) {
        if (!screens_.contains(id)) {
            add(std::make_unique<LaterScreen>(id));
        }
    }
    changes_ = state.fields.observe([this](const AnyField& field) { noteChange(field); });
}

void StudioScreens::noteChange(const AnyField& field) {
    if (isListed(reportFields, field)) {
        ++reportVersion_;
    } else if (!isListed(frameFields, field)) {
        ++version_;
    }
}

const ScreenContent& StudioScreens::content(StudioScreen id) {
    const std::uint64_t version = version_ + (showsReport(id) ? reportVersion_ : 0);
    const auto [entry, isNew] = kept_.try_emplace(id);
    if (isNew || entry->second.version != version) {
        entry->second = {.version = version, .content = at(id).content()};
    }
    return entry->second.content;
}

}  // namespace sorvane
