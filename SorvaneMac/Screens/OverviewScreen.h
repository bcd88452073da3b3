#pragma once

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Where the work stands: the table, its roles, what was done to it, and what comes next.
class OverviewScreen final : public Screen {
public:
    explicit OverviewScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::overview; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }

private:
    Card rolesCard() const;
    Card logCard() const;
    Card nextCard() const;

    StudioState& state_;
};

}  // namespace sorvane
