#include "SorvaneMac/Screens/SetupForm.h"

namespace sorvane {

Control::Control(const Control& other) = default;
Control::Control(Control&& other) noexcept = default;
Control& Control::operator=(const Control& other) = default;
Control& Control::operator=(Control&& other) noexcept = default;
Control::~Control() = default;

}  // namespace sorvane
