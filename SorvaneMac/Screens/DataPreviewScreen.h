#pragma once

#include <string>
#include <vector>

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/Screens/ShownCells.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The table itself, cell by cell.
class DataPreviewScreen final : public Screen {
public:
    /// What stands above a column.
    struct ColumnHead {
        std::string name;
        /// What the file says that the column is; empty without a label.
        std::string label;
        std::string role;
        std::string missing;
        /// The label, the labelled values and what the import had to say, a line each.
        std::string details;

        bool operator==(const ColumnHead&) const = default;
    };

    explicit DataPreviewScreen(StudioState& state)
        : showsValueLabels(state.fields, "showsValueLabels", false, ResetRule::kept),
          datasetHeaderDraft(state.fields, "datasetHeaderDraft"),
          state_(state) {}

    /// Whether a labelled code is shown by its label.
    Field<bool> showsValueLabels;
    /// The new name of the selected column, while it is typed.
    Field<std::string> datasetHeaderDraft;

    StudioScreen id() const override { return StudioScreen::dataPreview; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }

    std::vector<ColumnHead> columnHeads() const;
    bool hasValueLabels() const;
    /// The cells in the form that is chosen.
    ShownCells cells() const;
    bool isEditable() const { return state_.data.isDatasetEditable.get(); }
    /// The column of the selected cell; absent without one.
    std::optional<std::int64_t> selectedColumn() const;

private:
    void addGrid(SetupForm& form);
    void addSelectedColumn(SetupForm& form);

    StudioState& state_;
};

}  // namespace sorvane
