#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The t-test of two measurements of the same cases.
class PairedTTest final : public StoredAnalysis<PairedTTestRun> {
public:
    PairedTTest(StudioState& state, CompareMeansFields& fields)
        : StoredAnalysis(fields.cmPairedTTestRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override;
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<PairedTTestRun> compute() override;
    void present(const PairedTTestRun& run, ScreenContent& content) const override;

    StudioState& state_;
    CompareMeansFields& fields_;
};

}  // namespace sorvane
