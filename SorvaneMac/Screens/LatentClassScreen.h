#pragma once

#include "SorvaneMac/Screens/LatentClassFields.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

/// Unobserved groups of cases: profiles of numbers, classes of answers, and factor mixtures.
class LatentClassScreen final : public Screen {
public:
    LatentClassScreen(StudioState& state, LatentClassFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::latentClass; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override;

private:
    /// What can be an indicator of the chosen kind.
    VariableLists::List candidates() const;
    std::string analysisName() const;
    std::optional<Gate> tooFewCases(const std::vector<std::string>& items) const;
    /// What keeps the classes from being fitted.
    Gate gate() const;

    StudioState& state_;
    LatentClassFields& fields_;
};

}  // namespace sorvane
