#pragma once

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

/// One analysis of a screen that is not in this version: its selections and gates stand, and the
/// last gate of all says that it comes later, so that it never runs.
template <typename Fields>
class PlannedAnalysis : public Analysis {
public:
    PlannedAnalysis(StudioState& state, Fields& fields) : state_(state), fields_(fields) {}

    std::optional<Gate> gate() const final {
        std::optional<Gate> missing = selectionGate();
        return missing ? missing : ResultText::notYetGate(name());
    }
    std::string selection() const final { return {}; }
    void run(const std::function<void()>&) final {}
    bool hasRun() const final { return false; }
    void show(ScreenContent&) const final {}
    const AnyField* stored() const final { return nullptr; }
    bool resultIsMember() const final { return false; }

protected:
    virtual std::string_view name() const = 0;
    /// What is missing among the selections.
    virtual std::optional<Gate> selectionGate() const = 0;

    StudioState& state_;
    Fields& fields_;
};

}  // namespace sorvane
