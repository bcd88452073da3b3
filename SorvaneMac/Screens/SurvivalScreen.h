#pragma once

#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/Screens/SurvivalFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Time to an event: Kaplan-Meier curves and Cox regression.
class SurvivalScreen final : public PlannedScreen {
public:
    SurvivalScreen(StudioState& state, SurvivalFields& fields) : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::survival; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    bool isCox() const { return fields_.survMode.get() == SurvivalAnalysisMode::cox; }
    std::vector<std::string> predictors() const;
    std::string subtitle() const override;
    /// What keeps the analysis from running.
    std::optional<Gate> gate() const override;
    std::optional<Gate> missingSelection() const;
    std::optional<Gate> unsuitedColumns() const;

    StudioState& state_;
    SurvivalFields& fields_;
};

}  // namespace sorvane
