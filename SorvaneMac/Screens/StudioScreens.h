#pragma once

#include <map>
#include <memory>

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

struct ScreenFields;

/// All screens of the workspace, with their fields. The fields stand apart: most who hold the
/// screens do not look into them, and they reach every analysis.
class StudioScreens {
    std::unique_ptr<ScreenFields> ownFields_;

public:
    explicit StudioScreens(StudioState& state);
    ~StudioScreens();

    Screen& at(StudioScreen id) const { return *screens_.at(id); }
    /// Runs the seed of a screen that comes into view.
    void appear(StudioScreen id) {
        state_.fillWithoutChange([&] { at(id).seed(); });
    }
    /// Whether screens that can are to give figures of the survey's weights.
    bool areWeightsActive() const;
    /// What the screen shows, put together anew only after a field changed that it reads.
    const ScreenContent& content(StudioScreen id);

    /// Goes where a card's link leads: sets its fields, brings its screen into view, and runs it
    /// where the link says so.
    void follow(const ScreenLink& link);

    ScreenFields& fields;

private:
    struct KeptContent {
        FieldReads reads;
        ScreenContent content;
    };

    StudioState& state_;
    std::map<StudioScreen, std::unique_ptr<Screen>> screens_;
    std::map<StudioScreen, KeptContent> kept_;
};

}  // namespace sorvane
