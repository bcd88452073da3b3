#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Analysis of variance of conditions that every case went through.
class RepeatedMeasures final : public StoredAnalysis<RepeatedMeasuresRun> {
public:
    RepeatedMeasures(StudioState& state, CompareMeansFields& fields)
        : StoredAnalysis(fields.cmRepeatedMeasuresRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override;
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<RepeatedMeasuresRun> compute() override;
    void present(const RepeatedMeasuresRun& run, ScreenContent& content) const override;

    StudioState& state_;
    CompareMeansFields& fields_;
};

}  // namespace sorvane
