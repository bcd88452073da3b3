#pragma once

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/Screens/StructuralFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Confirmatory factor and structural models, written as text.
class StructuralScreen final : public Screen {
public:
    StructuralScreen(StudioState& state, StructuralFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::sem; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override;

private:
    bool isBlank() const;
    void addTemplates(SetupForm& form);
    /// What keeps the model from being fitted.
    Gate gate() const;

    StudioState& state_;
    StructuralFields& fields_;
};

}  // namespace sorvane
