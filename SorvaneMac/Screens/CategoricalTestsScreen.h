#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The table of two categorical variables with its tests, on the selections of Nonparametric &
/// Categorical. Its form and gates stand; the table is not in this version.
class CategoricalTestsScreen final : public PlannedScreen {
public:
    CategoricalTestsScreen(StudioState& state, NonparametricFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::categoricalTests; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    std::string subtitle() const override;
    /// What is missing before the table can be shown.
    std::optional<Gate> gate() const override;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
