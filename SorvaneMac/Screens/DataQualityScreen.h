#pragma once

#include "SorvaneMac/Screens/CleaningFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Missing values, values out of range, outliers and duplicate rows.
class DataQualityScreen final : public PlannedScreen {
public:
    DataQualityScreen(StudioState& state, CleaningFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::dataQuality; }
    void seed() override;
    SetupForm setup() override;
    Guide guide() const override;

private:
    std::string subtitle() const override;
    /// What keeps the checks from running.
    std::optional<Gate> gate() const override;
    /// What keeps values from being set to missing, which needs bounds as well.
    std::optional<Gate> clampGate() const;

    StudioState& state_;
    CleaningFields& fields_;
};

}  // namespace sorvane
