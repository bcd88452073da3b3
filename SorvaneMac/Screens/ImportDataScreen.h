#pragma once

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// What the import found and repaired, and the form for a blank grid.
class ImportDataScreen final : public Screen {
public:
    explicit ImportDataScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::importData; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }

private:
    Card issuesCard() const;
    Card markersCard() const;
    Card columnsCard() const;

    StudioState& state_;
};

}  // namespace sorvane
