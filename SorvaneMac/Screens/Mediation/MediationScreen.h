#pragma once

#include "SorvaneMac/Screens/AnalysisScreen.h"
#include "SorvaneMac/Screens/Mediation/MediationFields.h"

namespace sorvane {

/// Indirect effects through a mediator, and interactions with a moderator.
class MediationScreen final : public AnalysisScreen {
public:
    MediationScreen(StudioState& state, MediationFields& fields);

    void seed() override;

private:
    MediationFields& fields_;
};

}  // namespace sorvane
