#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The Friedman test of conditions that every case went through.
class Friedman final : public StoredAnalysis<FriedmanRun> {
public:
    Friedman(StudioState& state, NonparametricFields& fields)
        : StoredAnalysis(fields.npFriedmanRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run Friedman"; }
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<FriedmanRun> compute() override;
    void present(const FriedmanRun& run, ScreenContent& content) const override;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
