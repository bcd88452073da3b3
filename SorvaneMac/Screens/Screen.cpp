#include "SorvaneMac/Screens/Screen.h"

#include <nlohmann/json.hpp>

namespace sorvane {

Json Screen::result() const {
    return nullptr;
}

}  // namespace sorvane
