#pragma once

#include "SorvaneMac/Screens/DataQuality/DataQualityCards.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// What was derived from some columns, kept until they are others.
template <typename Value>
class KeptForColumns {
public:
    template <typename Make>
    const Value& of(std::vector<TextTable::Column> columns,
                    std::vector<std::string> names,
                    Make&& make) {
        if (!value_ || columns != columns_ || names != names_) {
            value_ = make();
            columns_ = std::move(columns);
            names_ = std::move(names);
        }
        return *value_;
    }

private:
    std::vector<TextTable::Column> columns_;
    std::vector<std::string> names_;
    std::optional<Value> value_;
};

/// Missing values, values out of range, outliers and duplicate rows.
class DataQualityScreen final : public Screen {
public:
    explicit DataQualityScreen(StudioState& state) : state_(state), fields_(state.cleaning) {}

    StudioScreen id() const override { return StudioScreen::dataQuality; }
    void seed() override { state_.clSeed(); }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override;
    Json result() const override;

private:
    void addRange(SetupForm& form);
    void addDuplicates(SetupForm& form);
    void addGroups(SetupForm& form);
    void addComposition(SetupForm& form);

    bool hasNumbers() const;
    const DataQualityCards::Missingness& missingness() const;
    const DuplicateReport& duplicates() const;
    /// The columns by which rows are compared, in column order; none for all.
    std::vector<std::string> keyColumns() const;
    /// Absent where no groups are chosen.
    std::optional<SubgroupMissingnessResult> subgroups() const;
    /// Absent where no variable is chosen.
    std::optional<CompositionResult> composition() const;
    /// The cells of the variable that is checked; null where it has gone.
    const TextColumn* checkedCells() const;
    std::vector<Tile> tiles() const;

    StudioState& state_;
    CleaningFields& fields_;
    mutable KeptForColumns<DataQualityCards::Missingness> missingness_;
    mutable KeptForColumns<DuplicateReport> duplicates_;
};

}  // namespace sorvane
