#include "SorvaneCore/Project/ProjectArchive.h"

namespace sorvane {

ProjectVariableState ProjectVariableState::of(const DataVariable& variable,
                                              bool isReverseCoded,
                                              bool isUnreliableFlagged) {
    return {.name = variable.name,
            .label = variable.label,
            .assignedType = variable.assignedType,
            .assignedConstruct = variable.assignedConstruct,
            .scaleRange = variable.scaleRange,
            .includeInReliability = variable.includeInReliability,
            .includeInDescriptives = variable.includeInDescriptives,
            .isReverseCoded = isReverseCoded,
            .isUnreliableFlagged = isUnreliableFlagged};
}

ProjectArchive ProjectArchive::of(const ImportedDataset& dataset, ProjectContents contents) {
    ProjectArchive archive;
    archive.datasetName = dataset.name;
    archive.headers = dataset.headers;
    archive.rows = dataset.rows;
    for (const DataVariable& variable : dataset.variables) {
        archive.variableStates.push_back(
            ProjectVariableState::of(variable, contents.reverseCodedNames.contains(variable.name),
                                     contents.unreliableItemNames.contains(variable.name)));
    }
    archive.transformationLog = std::move(contents.transformationLog);
    archive.settings = std::move(contents.settings);
    archive.createdAt = contents.createdAt;
    archive.modifiedAt = contents.modifiedAt;
    return archive;
}

}  // namespace sorvane
