#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/Screens/Screen.h"

namespace sorvane {

/// A screen whose analysis is not in this version: its fields, form and gates stand, its run says
/// what is missing or that the analysis comes later, and it shows no result.
class PlannedScreen : public Screen {
public:
    ScreenContent content() const final;
    std::optional<std::string> run() final;

protected:
    virtual std::string heading() const;
    virtual std::string subtitle() const = 0;
    /// What stands in place of results; the last one of all says that the analysis comes later.
    virtual std::optional<Gate> gate() const = 0;
};

}  // namespace sorvane
