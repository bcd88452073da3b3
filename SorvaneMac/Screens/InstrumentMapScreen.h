#pragma once

#include <string>
#include <vector>

#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// What each column seems to be, why, and whether it stands in the item set.
class InstrumentMapScreen final : public Screen {
public:
    struct Row {
        Uuid id;
        std::string name;
        std::string label;
        std::string inferredRole;
        std::string category;
        /// How likely the column is a scale item, such as "85%".
        std::string probability;
        std::string reasons;
        /// What the import had to say.
        std::string remarks;
        bool isIncluded = false;
        /// Whether the column can stand in the item set at all.
        bool canBeIncluded = false;

        bool operator==(const Row&) const = default;
    };

    explicit InstrumentMapScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::instrumentMap; }
    /// Scores the columns where the scores are not those of this table; the item set stays.
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }

    std::vector<Row> rows() const;
    bool hasLabels() const { return DatasetText::hasLabels(state_.dataset()); }
    void setIncluded(const Uuid& variable, bool isIncluded) {
        state_.setReliabilityIncluded(variable, isIncluded);
    }

private:
    /// What the reader of the file noted, in few lines.
    std::optional<Card> importCard() const;

    StudioState& state_;
};

}  // namespace sorvane
