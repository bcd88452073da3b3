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
    /// What keeps it from running; absent where it can run.
    virtual std::optional<Gate> gate() const = 0;
    /// Runs it; called only without a gate.
    virtual void run() {}
    /// Shows what a run would give, or gave.
    virtual void showPreview(ScreenContent&) const {}
    /// The record of what it shows; null where it adds columns and no more.
    virtual Json result() const;
    virtual Guide guide() const = 0;
};

}  // namespace sorvane
