#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/OptionalSeed.h"
#include "SorvaneMac/Screens/Survival/SurvivalFields.h"

namespace sorvane {

/// Time to an event: Kaplan-Meier curves and Cox regression.
class SurvivalScreen final : public AnalysisScreen {
public:
    SurvivalScreen(StudioState& state, SurvivalFields& fields);

    void seed() override;

private:
    SurvivalFields& fields_;
    /// Blank strata are a choice as well, of one curve for all cases.
    OptionalSeed strataSeed_;
};

}  // namespace sorvane
