#pragma once

#include <string>

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// What the user reads where an action needs a staged finding and there is none.
inline constexpr std::string_view stageFirst = "Stage at least one result first.";

/// The staged findings and the document made of them.
class FindingsScreen final : public Screen {
public:
    explicit FindingsScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::findings; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    /// Assembles the document.
    std::optional<std::string> run() override;

    bool hasDocument() const;
    /// Whether assembling would put another document in place of one that may have been edited.
    bool mustConfirmAssembling() const { return hasDocument(); }

private:
    StudioState& state_;
};

}  // namespace sorvane
