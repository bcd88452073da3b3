#pragma once

#include "SorvaneMac/Screens/CleaningFields.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Missing values, values out of range, outliers and duplicate rows.
class DataQualityScreen final : public Screen {
public:
    DataQualityScreen(StudioState& state, CleaningFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::dataQuality; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override;

private:
    /// What keeps the checks from running.
    Gate gate() const;
    /// What keeps values from being set to missing, which needs bounds as well.
    Gate clampGate() const;

    StudioState& state_;
    CleaningFields& fields_;
};

}  // namespace sorvane
