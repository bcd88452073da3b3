#include "SorvaneMac/Screens/PlannedScreen.h"

#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

ScreenContent PlannedScreen::content() const {
    return {.title = heading(), .subtitle = subtitle(), .gate = gate()};
}

std::optional<std::string> PlannedScreen::run() {
    const std::optional<Gate> missing = gate();
    return missing ? std::optional(ResultText::sentence(*missing)) : std::nullopt;
}

std::string PlannedScreen::heading() const {
    return std::string(title(id()));
}

}  // namespace sorvane
