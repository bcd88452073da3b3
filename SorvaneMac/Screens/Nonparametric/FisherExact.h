#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Fisher's exact test of two binary columns.
class FisherExact final : public StoredAnalysis<FisherRun> {
public:
    FisherExact(StudioState& state, NonparametricFields& fields)
        : StoredAnalysis(fields.npFisherRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run Fisher exact"; }
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<FisherRun> compute() override;
    void present(const FisherRun& run, ScreenContent& content) const override;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
