#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/Survival/SurvivalFields.h"

namespace sorvane {

/// Time to an event: Kaplan-Meier curves and Cox regression.
class SurvivalScreen final : public AnalysisScreen {
public:
    SurvivalScreen(StudioState& state, SurvivalFields& fields);

    void seed() override;

private:
    SurvivalFields& fields_;
    /// Whether the strata were seeded or chosen since the table came in; blank ones are a choice as
    /// well, of one curve for all cases.
    bool strataStand_ = false;
    Subscription watch_;
};

}  // namespace sorvane
