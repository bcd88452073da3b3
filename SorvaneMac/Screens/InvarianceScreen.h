#pragma once

#include "SorvaneMac/Screens/InvarianceFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

/// Whether the items of one factor measure alike in the groups to be compared.
class InvarianceScreen final : public PlannedScreen {
public:
    InvarianceScreen(StudioState& state, InvarianceFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::invariance; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    std::vector<std::string> items() const;
    std::optional<Gate> goneColumn() const;
    std::string subtitle() const override;
    /// What keeps the models from being fitted.
    std::optional<Gate> gate() const override;

    StudioState& state_;
    InvarianceFields& fields_;
};

}  // namespace sorvane
