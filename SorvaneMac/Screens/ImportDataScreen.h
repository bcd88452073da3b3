#pragma once

#include <boost/describe/enum.hpp>

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The ways out of what an import left in doubt.
enum class ImportRemedy { none, setImplausibleToMissing, readAgainWithEightByteReferences };
BOOST_DESCRIBE_ENUM(ImportRemedy, none, setImplausibleToMissing, readAgainWithEightByteReferences)

/// What the import found and repaired, and the form for a blank grid.
class ImportDataScreen final : public Screen {
public:
    explicit ImportDataScreen(StudioState& state);

    /// What the next run does.
    Field<ImportRemedy> importRemedy;

    StudioScreen id() const override { return StudioScreen::importData; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    /// Carries the chosen remedy out.
    std::optional<std::string> run() override;

private:
    Card issuesCard() const;
    Card markersCard() const;
    Card columnsCard() const;

    StudioState& state_;
};

}  // namespace sorvane
