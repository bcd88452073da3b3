#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The signed-rank test of two measurements of the same cases.
class WilcoxonSignedRank final : public StoredAnalysis<WilcoxonRun> {
public:
    WilcoxonSignedRank(StudioState& state, NonparametricFields& fields)
        : StoredAnalysis(fields.npWilcoxonRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run Wilcoxon signed-rank"; }
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<WilcoxonRun> compute() override;
    void present(const WilcoxonRun& run, ScreenContent& content) const override;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
