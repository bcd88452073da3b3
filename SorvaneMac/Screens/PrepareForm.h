#pragma once

#include <string_view>

#include "SorvaneMac/Screens/Screen.h"

namespace sorvane {

/// One section of Prepare Data: its controls, its guide, and what keeps it from running.
class PrepareForm {
public:
    virtual ~PrepareForm() = default;

    virtual void seed() {}
    /// Adds the controls under the section picker.
    virtual void addTo(SetupForm& form) = 0;
    virtual Gate gate() const = 0;
    virtual Guide guide() const = 0;
};

}  // namespace sorvane
