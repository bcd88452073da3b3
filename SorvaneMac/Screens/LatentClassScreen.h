#pragma once

#include "SorvaneMac/Screens/LatentClassFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

/// Unobserved groups of cases: profiles of numbers, classes of answers, and factor mixtures.
class LatentClassScreen final : public PlannedScreen {
public:
    LatentClassScreen(StudioState& state, LatentClassFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::latentClass; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    /// What can be an indicator of the chosen kind.
    VariableLists::List candidates() const;
    std::string analysisName() const;
    std::optional<Gate> tooFewCases(const std::vector<std::string>& items) const;
    std::string heading() const override;
    std::string subtitle() const override;
    /// What keeps the classes from being fitted.
    std::optional<Gate> gate() const override;

    StudioState& state_;
    LatentClassFields& fields_;
};

}  // namespace sorvane
