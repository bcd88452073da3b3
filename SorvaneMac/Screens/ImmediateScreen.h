#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/Screens/Screen.h"

namespace sorvane {

/// A screen that shows what its selections give at once, without a run.
class ImmediateScreen : public Screen {
public:
    /// The sentence that says what is missing; there is nothing else to run.
    std::optional<std::string> run() final;
    Json result() const final;

protected:
    /// What is missing before anything can be shown.
    virtual std::optional<Gate> gate() const = 0;
    /// The engine's record of what is shown; asked for only when nothing is missing.
    virtual Json record() const = 0;
};

}  // namespace sorvane
