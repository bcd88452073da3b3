#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// McNemar's test of change in a binary outcome.
class McNemar final : public StoredAnalysis<McNemarRun> {
public:
    McNemar(StudioState& state, NonparametricFields& fields)
        : StoredAnalysis(fields.npMcNemarRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override { return "Run McNemar"; }
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<McNemarRun> compute() override;
    void present(const McNemarRun& run, ScreenContent& content) const override;

    StudioState& state_;
    NonparametricFields& fields_;
};

}  // namespace sorvane
