#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The t-test of one outcome in two groups of different cases.
class IndependentTTest final : public StoredAnalysis<TTestRun> {
public:
    IndependentTTest(StudioState& state, CompareMeansFields& fields)
        : StoredAnalysis(fields.cmTTestRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override;
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    std::string invitation() const override;
    Guide guide() const override;

private:
    std::optional<TTestRun> compute() override;
    void present(const TTestRun& run, ScreenContent& content) const override;

    StudioState& state_;
    CompareMeansFields& fields_;
};

}  // namespace sorvane
