#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The Mann-Whitney test of one outcome in two groups.
class MannWhitney final : public StoredAnalysis<MannWhitneyRun> {
public:
    MannWhitney(StudioState& state, NonparametricFields& fields)
        : StoredAnalysis(fields.npMannWhitneyRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run Mann-Whitney U"; }
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<MannWhitneyRun> compute() override;
    void present(const MannWhitneyRun& run, ScreenContent& content) const override;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
