#pragma once

#include <cstdint>

#include <QTimer>

#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Autosaves the workspace: each minute in which something changed, soon after a table was adopted
/// or a finding staged, and at its own end, which is the session's.
class AutosaveSchedule {
public:
    explicit AutosaveSchedule(StudioState& state);
    ~AutosaveSchedule();
    AutosaveSchedule(const AutosaveSchedule&) = delete;
    AutosaveSchedule& operator=(const AutosaveSchedule&) = delete;

private:
    void saveIfChanged();

    StudioState& state_;
    QTimer regular_;
    QTimer soon_;
    std::uint64_t savedChanges_ = 0;
    Subscription actions_;
};

}  // namespace sorvane
