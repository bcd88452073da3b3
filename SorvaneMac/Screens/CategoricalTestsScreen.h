#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/Screens/NonparametricFields.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The table of two categorical variables with its tests, on the selections of Nonparametric &
/// Categorical. Its form and gates stand; the table is not in this version.
class CategoricalTestsScreen final : public Screen {
public:
    CategoricalTestsScreen(StudioState& state, NonparametricFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::categoricalTests; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override;

private:
    /// What is missing before the table can be shown.
    std::optional<Gate> gate() const;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
