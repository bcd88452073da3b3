#pragma once

#include "SorvaneMac/Screens/DataPreviewScreen.h"
#include "SorvaneMac/Shell/DataGridFindBar.h"
#include "SorvaneMac/Shell/TablePage.h"

class QCheckBox;
class QLineEdit;

namespace sorvane {

class DataGridView;

/// Data Preview: the table in a grid, the way to a row or a text, and value labels on or off.
class DataPreviewPage final : public TablePage {
public:
    explicit DataPreviewPage(Workspace& workspace);

    /// Puts the selected cells on the clipboard as lines of tab-separated text.
    bool copySelection() override;

    /// Pastes a block of cells from the selected one on.
    bool pasteSelection() override;

    void commitEdits() override;

    void openFindBar();
    /// Searches for what stands in the find bar and goes to the first match from the present cell.
    void search();
    void goToMatch(DataGridFindBar::Direction direction);

protected:
    void refreshTable() override;

private:
    QWidget* toolBar();
    /// The buttons that change the grid, shown while it can be edited.
    QWidget* gridButtons();
    void addShortcut(const QString& name, const QKeySequence& keys, std::function<void()> action);
    void closeFindBar();
    void goToRow();
    void rememberPlace();

    DataPreviewScreen& preview_;
    DataGridView* grid_;
    DataGridFindBar* findBar_;
    QLineEdit* row_;
    QCheckBox* labels_;
    QWidget* gridButtons_ = nullptr;
    /// What the matches that are shown were found for.
    TableQuery found_;
};

}  // namespace sorvane
