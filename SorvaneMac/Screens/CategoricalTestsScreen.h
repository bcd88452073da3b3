#pragma once

#include <boost/describe/class.hpp>
#include <optional>
#include <string>

#include "SorvaneCore/Analyses/Categorical/CrossTabulation.h"
#include "SorvaneMac/Screens/ImmediateScreen.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The table of two categorical variables and the tests that suit it.
struct CategoryEvidence {
    std::optional<CrossTabResult> table;
    std::optional<ChiSquareResult> chiSquare;
    /// Of a table of two rows and two columns only.
    std::optional<FisherExactResult> fisher;
};
BOOST_DESCRIBE_STRUCT(CategoryEvidence, (), (table, chiSquare, fisher))

/// The table of two categorical variables with its shares and tests, on the selections of
/// Nonparametric & Categorical; shown at once, without a run.
class CategoricalTestsScreen final : public ImmediateScreen {
public:
    CategoricalTestsScreen(StudioState& state, NonparametricFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::categoricalTests; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;

private:
    std::optional<Gate> gate() const override;
    Json record() const override;
    CategoryEvidence evidence() const;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
