#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/Screens/CompareMeansFields.h"
#include "SorvaneMac/Screens/PlannedScreen.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

/// The coaching text of one test of Compare Means.
Guide guideOf(InferentialTest test);

/// Means of independent groups, of repeated measurements, and of groups with covariates held
/// constant. Its seed, form and gates stand; its tests are not in this version.
class CompareMeansScreen final : public PlannedScreen {
public:
    CompareMeansScreen(StudioState& state, CompareMeansFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::inferential; }
    void seed() override { cmSeedDefaults(); }
    SetupForm setup() override;
    Guide guide() const override { return guideOf(fields_.cmTest.get()); }

    void cmSeedDefaults();
    /// The numeric variables less the outcome and the group selected for ANCOVA.
    VariableLists::List cmAncovaCovariateCandidates() const;

private:
    void addGroupControls(SetupForm& form);
    void addTTestControls(SetupForm& form);
    void addTestControls(SetupForm& form);
    std::string subtitle() const override;
    /// What is missing before the chosen test can run.
    std::optional<Gate> gate() const override;
    std::optional<Gate> selectionGate() const;
    std::optional<Gate> outcomeAndGroupGate(const Field<VariableName>& outcome,
                                            const Field<VariableName>& group) const;
    std::optional<Gate> tTestGate() const;
    std::optional<Gate> pairedGate() const;
    std::optional<Gate> anovaGate() const;
    std::optional<Gate> repeatedMeasuresGate() const;
    std::optional<Gate> ancovaGate() const;

    StudioState& state_;
    CompareMeansFields& fields_;
};

}  // namespace sorvane
