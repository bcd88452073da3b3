#include "SorvaneMac/Headless/OperationTable.h"

#include <algorithm>

namespace sorvane::OperationTable {

namespace {

Uuid variableId(const StudioState& state, const CallArguments& given) {
    const auto name = given.required<std::string>("variable");
    const DataVariable* variable = state.dataset().variable(name);
    if (!variable) {
        throw CallError("There is no variable \"" + name + "\".");
    }
    return variable->id;
}

}  // namespace

const std::vector<Operation>& all() {
    using State = StudioState;
    using Call = CallArguments;
    static const std::vector<Operation> table = {
        {"resetToSample",
         [](State& state, const Call&) {
             state.resetToSample();
         }},
        {"beginBlankDataset",
         [](State& state, const Call&) {
             state.beginBlankDataset();
         }},
        {"createBlankDataset",
         [](State& state, const Call& given) {
             state.createBlankDataset(
                 given.setting<std::string>("name", ""), given.required<std::int64_t>("rows"),
                 given.required<std::int64_t>("columns"),
                 given.setting<std::optional<std::vector<std::string>>>("headers", {}));
         }},
        {"confirmPendingImport",
         [](State& state, const Call&) {
             state.confirmPendingImport();
         }},
        {"cancelPendingImport",
         [](State& state, const Call&) {
             state.cancelPendingImport();
         }},
        {"resetAnalysisState",
         [](State& state, const Call&) {
             state.resetAnalysisState();
         }},
        {"refreshAnalysisDefaults",
         [](State& state, const Call&) {
             state.refreshAnalysisDefaults();
         }},
        {"assignVariable",
         [](State& state, const Call& given) {
             state.assignVariable(variableId(state, given), given.required<VariableKind>("kind"));
         }},
        {"setReliabilityIncluded",
         [](State& state, const Call& given) {
             state.setReliabilityIncluded(variableId(state, given),
                                          given.required<bool>("included"));
         }},
        {"setDescriptivesIncluded",
         [](State& state, const Call& given) {
             state.setDescriptivesIncluded(variableId(state, given),
                                           given.required<bool>("included"));
         }},
        {"classifyAndSeedScaleItems",
         [](State& state, const Call& given) {
             state.classifyAndSeedScaleItems(given.setting("seedSelection", false));
         }},
        {"selectLikertCandidateItemsForReliability",
         [](State& state, const Call&) {
             state.selectLikertCandidateItemsForReliability();
         }},
        {"syncDatasetDraftHeaders",
         [](State& state, const Call&) {
             state.syncDatasetDraftHeaders();
         }},
        {"updateDatasetCell",
         [](State& state, const Call& given) {
             state.updateDatasetCell(given.required<std::int64_t>("row"),
                                     given.required<std::int64_t>("column"),
                                     given.required<std::string>("value"));
         }},
        {"clearReport",
         [](State& state, const Call&) {
             state.clearReport();
         }},
        {"assembleReport",
         [](State& state, const Call&) {
             state.assembleReport();
         }},
        {"stageResearcherNote",
         [](State& state, const Call& given) {
             state.stageResearcherNote(given.required<StudioScreen>("screen"));
         }},
        {"saveMethodFile",
         [](State& state, const Call& given) {
             if (!state.saveMethodFile(given.required<std::string>("file"))) {
                 throw CallError(*state.saveStatusMessage.get());
             }
         }},
        {"cancelComputing",
         [](State& state, const Call&) {
             state.cancelComputing();
         }},
    };
    return table;
}

const Operation* find(std::string_view name) {
    const auto found = std::find_if(all().begin(), all().end(), [name](const Operation& operation) {
        return operation.name == name;
    });
    return found == all().end() ? nullptr : &*found;
}

}  // namespace sorvane::OperationTable
