#pragma once

#include <string_view>
#include <vector>

#include "SorvaneMac/Screens/Screen.h"

namespace sorvane {

/// How the program is used, on one page.
class UserGuideScreen final : public Screen {
public:
    /// Key combinations, parted by ", ", and what they do.
    struct Keys {
        std::string_view keys;
        std::string_view action;
    };
    static const std::vector<Keys>& keys();

    StudioScreen id() const override { return StudioScreen::userGuide; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }
};

}  // namespace sorvane
