#pragma once

#include "SorvaneMac/Screens/InvarianceFields.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

/// Whether the items of one factor measure alike in the groups to be compared.
class InvarianceScreen final : public Screen {
public:
    InvarianceScreen(StudioState& state, InvarianceFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::invariance; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override;

private:
    std::vector<std::string> items() const;
    std::optional<Gate> goneColumn() const;
    /// What keeps the models from being fitted.
    Gate gate() const;

    StudioState& state_;
    InvarianceFields& fields_;
};

}  // namespace sorvane
