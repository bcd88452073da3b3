#pragma once

#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/Screens/StructuralFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Confirmatory factor and structural models, written as text.
class StructuralScreen final : public PlannedScreen {
public:
    StructuralScreen(StudioState& state, StructuralFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::sem; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    bool isBlank() const;
    void addTemplates(SetupForm& form);
    std::string subtitle() const override;
    /// What keeps the model from being fitted.
    std::optional<Gate> gate() const override;

    StudioState& state_;
    StructuralFields& fields_;
};

}  // namespace sorvane
