#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"

namespace sorvane {

/// Fills the blank selections of Nonparametric & Categorical, which Categorical Tests shares.
void npSeed(NonparametricFields& fields, const ImportedDataset& dataset);

/// Tests on ranks and on tables of categories.
class NonparametricScreen final : public AnalysisScreen {
public:
    NonparametricScreen(StudioState& state, NonparametricFields& fields);

    void seed() override { npSeed(fields_, state_.dataset()); }

private:
    NonparametricFields& fields_;
};

}  // namespace sorvane
