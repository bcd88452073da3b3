#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Project/Json.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/StudioScreen.h"

namespace sorvane {

/// The coaching text of a screen in plain words.
struct Guide {
    std::string answers;
    std::string needs;
    std::vector<std::string> doNotClaim;

    bool operator==(const Guide&) const = default;
};

/// One screen of the workspace: its fields, its seed, its form, its run and what it shows.
///
/// A screen reads the fields and calls the engine; a view draws what it gives and calls it back.
class Screen {
public:
    virtual ~Screen() = default;

    virtual StudioScreen id() const = 0;
    /// Fills blank selections; never overwrites what the user chose.
    virtual void seed() {}
    virtual SetupForm setup() = 0;
    virtual ScreenContent content() const = 0;
    virtual Guide guide() const = 0;
    /// Runs the screen's analysis on its selections.
    ///
    /// Returns    the sentence that says why it could not run; absent when it did
    virtual std::optional<std::string> run() = 0;
    /// The engine's record of what the screen shows; null while there is none.
    virtual Json result() const;
};

}  // namespace sorvane
