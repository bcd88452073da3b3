#pragma once

#include "SorvaneMac/Screens/Analysis.h"

namespace sorvane {

/// One analysis of a screen that is not in this version: its selections and gates stand, and the
/// last gate of all says that it comes later, so that it never runs.
class PlannedAnalysis : public Analysis {
public:
    std::optional<Gate> gate() const final;
    std::string selection() const final { return {}; }
    void run() final {}
    bool hasRun() const final { return false; }
    void show(ScreenContent&) const final {}
    const AnyField* stored() const final { return nullptr; }
    bool resultIsMember() const final { return false; }

protected:
    virtual std::string_view name() const = 0;
    /// What is missing among the selections.
    virtual std::optional<Gate> selectionGate() const = 0;
};

}  // namespace sorvane
