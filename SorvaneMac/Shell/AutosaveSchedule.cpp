#include "SorvaneMac/Shell/AutosaveSchedule.h"

#include <chrono>

namespace sorvane {

namespace {

constexpr std::chrono::minutes interval{1};

}  // namespace

AutosaveSchedule::AutosaveSchedule(StudioState& state)
    : state_(state), savedChanges_(state.projectChanges()) {
    QObject::connect(&regular_, &QTimer::timeout, &regular_, [this] { saveIfChanged(); });
    QObject::connect(&soon_, &QTimer::timeout, &soon_, [this] { saveIfChanged(); });
    // After the adoption or staging as a whole, and once for several.
    soon_.setSingleShot(true);
    actions_ = state_.observeActions([this](std::string_view action) {
        if (action == "autosave") {
            soon_.start(0);
        }
    });
    regular_.start(interval);
}

AutosaveSchedule::~AutosaveSchedule() {
    state_.autosave();
    state_.finishAutosave();
}

void AutosaveSchedule::saveIfChanged() {
    if (state_.projectChanges() != savedChanges_ || state_.hasAutosaveFailed()) {
        state_.autosave();
        savedChanges_ = state_.projectChanges();
    }
}

}  // namespace sorvane
