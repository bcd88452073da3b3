#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/NonparametricFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The coaching text of one test of Nonparametric & Categorical.
Guide guideOf(NPTest test);

/// Fills the blank selections of Nonparametric & Categorical, which Categorical Tests shares.
void npSeed(NonparametricFields& fields, const ImportedDataset& dataset);

/// Tests on ranks and on tables of categories. Its seed, form and gates stand; its tests are not
/// in this version.
class NonparametricScreen final : public PlannedScreen {
public:
    NonparametricScreen(StudioState& state, NonparametricFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::nonparametric; }
    void seed() override { npSeed(fields_, state_.dataset()); }
    SetupForm setup() override;
    Guide guide() const override { return guideOf(fields_.npTest.get()); }

    /// The categories of the grouping variable.
    std::vector<std::string> npCategories() const;

private:
    void addTestControls(SetupForm& form);
    void addGroupControls(SetupForm& form);
    void addTableControls(SetupForm& form);
    std::string subtitle() const override;
    /// What is missing before the chosen test can run.
    std::optional<Gate> gate() const override;
    std::optional<Gate> selectionGate() const;
    std::optional<Gate> outcomeAndGroupGate() const;
    std::optional<Gate> mannWhitneyGate() const;
    std::optional<Gate> wilcoxonGate() const;
    std::optional<Gate> kruskalWallisGate() const;
    std::optional<Gate> friedmanGate() const;
    std::optional<Gate> goodnessOfFitGate() const;
    std::optional<Gate> tableGate() const;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
