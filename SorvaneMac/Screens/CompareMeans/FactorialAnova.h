#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Analysis of variance by several factors and their interactions.
class FactorialAnova final : public StoredAnalysis<FactorialRun> {
public:
    FactorialAnova(StudioState& state, CompareMeansFields& fields)
        : StoredAnalysis(fields.cmFactorialRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override;
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<FactorialRun> compute() override;
    void present(const FactorialRun& run, ScreenContent& content) const override;

    StudioState& state_;
    CompareMeansFields& fields_;
};

}  // namespace sorvane
