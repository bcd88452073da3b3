#pragma once

#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/Screens/SurveyFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Estimates under a sampling design.
class SurveyScreen final : public PlannedScreen {
public:
    SurveyScreen(StudioState& state, SurveyFields& fields) : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::survey; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    /// What the standard errors lack with the design as it stands; empty with strata and clusters.
    std::string designNote() const;
    std::string subtitle() const override;
    /// What keeps the estimate from running.
    std::optional<Gate> gate() const override;
    std::optional<Gate> missingSelection() const;
    std::optional<Gate> unsuitedDesign() const;

    StudioState& state_;
    SurveyFields& fields_;
};

}  // namespace sorvane
