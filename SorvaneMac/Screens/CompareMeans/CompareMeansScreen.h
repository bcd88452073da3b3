#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansFields.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

/// Means of independent groups, of repeated measurements, of combinations of factors, and of
/// groups with covariates held constant.
class CompareMeansScreen final : public AnalysisScreen {
public:
    CompareMeansScreen(StudioState& state, CompareMeansFields& fields);

    void seed() override { cmSeedDefaults(); }
    void cmSeedDefaults();

private:
    CompareMeansFields& fields_;
};

/// The numeric variables less the outcome and the group selected for ANCOVA.
VariableLists::List cmAncovaCovariateCandidates(const ImportedDataset& dataset,
                                                const CompareMeansFields& fields);

}  // namespace sorvane
