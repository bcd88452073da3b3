#pragma once

#include <optional>

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// What another researcher needs to get the same figures: record, data, roles, rules, engine.
class TechnicalAppendixScreen final : public Screen {
public:
    explicit TechnicalAppendixScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::technicalAppendix; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }
    Json result() const override;

    /// The record in the preview; absent before the first one.
    const std::optional<MethodFile>& previewed() const { return previewed_; }

private:
    Card previewCard() const;
    Card sourceCard() const;
    Card logCard() const;
    Card missingCard() const;
    Card scaleCard() const;
    Card engineCard() const;
    Card findingsCard() const;

    StudioState& state_;
    /// What is saved is what was seen, and each read of the state makes another record.
    mutable std::optional<MethodFile> previewed_;
};

}  // namespace sorvane
