#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The Kruskal-Wallis test of one outcome in several groups, with Dunn's pairs.
class KruskalWallis final : public StoredAnalysis<KruskalWallisRun> {
public:
    KruskalWallis(StudioState& state, NonparametricFields& fields)
        : StoredAnalysis(fields.npKruskalWallisRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run Kruskal-Wallis"; }
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<KruskalWallisRun> compute() override;
    void present(const KruskalWallisRun& run, ScreenContent& content) const override;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
