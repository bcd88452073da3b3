#pragma once

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Where the study stands: the table and its roles, what needs a look, what is staged, and what
/// comes next.
class OverviewScreen final : public Screen {
public:
    explicit OverviewScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::overview; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }

private:
    Card nextCard() const;
    Card attentionCard() const;
    Card rolesCard() const;
    Card remarksCard() const;
    Card findingsCard() const;
    Card logCard() const;
    EvidenceLine importLine() const;
    EvidenceLine missingLine() const;

    StudioState& state_;
};

}  // namespace sorvane
