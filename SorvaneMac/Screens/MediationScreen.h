#pragma once

#include "SorvaneMac/Screens/MediationFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Indirect effects through a mediator, and interactions with a moderator.
class MediationScreen final : public PlannedScreen {
public:
    MediationScreen(StudioState& state, MediationFields& fields) : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::mediation; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    bool isModeration() const { return fields_.medMode.get() == MediationScreenMode::moderation; }
    /// The mediator or the moderator.
    Field<VariableName>& middle() const { return isModeration() ? fields_.medW : fields_.medM; }
    /// X, the middle one and Y.
    NameSet roles() const;
    std::vector<std::string> covariates() const;
    std::optional<Gate> goneColumn() const;
    bool hasEnoughCases() const;
    std::string heading() const override;
    std::string subtitle() const override;
    /// What keeps the analysis from running.
    std::optional<Gate> gate() const override;

    StudioState& state_;
    MediationFields& fields_;
};

}  // namespace sorvane
