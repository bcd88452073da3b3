#pragma once

#include <vector>

#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Shell/Page.h"

class QComboBox;
class QLabel;
class QPushButton;
class QBoxLayout;
class QVBoxLayout;

namespace sorvane {

class ReportEditor;

/// Findings: the staged results on the left, the report on the right, or below them where its page
/// would not fit beside them.
class FindingsPage final : public Page {
public:
    explicit FindingsPage(Workspace& workspace);

    void refresh() override;
    void commitEdits() override;
    void assemble();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* stagedColumn();
    QWidget* editorColumn();
    QWidget* formatBar();
    void showStaged();
    QWidget* stagedCard(const ReportItem& item);
    void clear();
    void followCursor();

    Workspace& workspace_;
    ReportEditor* editor_;
    QLabel* count_;
    QLabel* placeholder_;
    QVBoxLayout* cards_;
    QPushButton* assemble_;
    QPushButton* clear_;
    QPushButton* bold_;
    QPushButton* italic_;
    QPushButton* underline_;
    QComboBox* size_;
    QWidget* formats_;
    QWidget* staged_;
    QBoxLayout* panes_;
    std::vector<ReportItem> shown_;
};

}  // namespace sorvane
