#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The one-way comparison of all groups of a column.
class OneWayAnova final : public StoredAnalysis<OneWayRun> {
public:
    OneWayAnova(StudioState& state, CompareMeansFields& fields)
        : StoredAnalysis(fields.cmOneWayRun), state_(state), fields_(fields) {}

    std::string subtitle() const override;
    void addControls(SetupForm& form) override;
    std::string runLabel() const override;
    std::optional<Gate> gate() const override;
    std::string selection() const override;
    Guide guide() const override;

private:
    std::optional<OneWayRun> compute() override;
    void present(const OneWayRun& run, ScreenContent& content) const override;

    StudioState& state_;
    CompareMeansFields& fields_;
};

}  // namespace sorvane
