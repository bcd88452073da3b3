#pragma once

#include <cstdint>
#include <optional>

#include "SorvaneMac/Report/RichDocument.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// What leaves the program: the report in its formats.
class ExportScreen final : public Screen {
public:
    explicit ExportScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::export_; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }

    /// The document as it was last edited; assembled now where that was not yet done.
    ///
    /// Failure    nothing is staged and nothing was assembled -> absent
    std::optional<RichDocument> document() const;
    /// Whether there is anything to make a file of.
    bool canExport() const;

private:
    bool hasDocument() const;
    Card reportCard(std::int64_t staged) const;
    Card recordCard() const;

    StudioState& state_;
};

}  // namespace sorvane
