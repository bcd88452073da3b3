#pragma once

#include "SorvaneMac/Screens/Screen.h"

namespace sorvane {

/// How the program is used, on one page.
class UserGuideScreen final : public Screen {
public:
    StudioScreen id() const override { return StudioScreen::userGuide; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }
};

}  // namespace sorvane
