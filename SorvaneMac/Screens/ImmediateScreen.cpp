#include "SorvaneMac/Screens/ImmediateScreen.h"

#include <nlohmann/json.hpp>

#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

std::optional<std::string> ImmediateScreen::run() {
    const std::optional<Gate> missing = gate();
    return missing ? std::optional(ResultText::sentence(*missing)) : std::nullopt;
}

Json ImmediateScreen::result() const {
    return gate() ? Json(nullptr) : record();
}

}  // namespace sorvane
