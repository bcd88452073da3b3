#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The comparison of groups with covariates held constant.
class Ancova final : public StoredAnalysis<AncovaRun> {
public:
    Ancova(StudioState& state, CompareMeansFields& fields)
        : StoredAnalysis(fields.cmAncovaRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override;
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<AncovaRun> compute() override;
    void present(const AncovaRun& run, ScreenContent& content) const override;

    StudioState& state_;
    CompareMeansFields& fields_;
};

}  // namespace sorvane
