#pragma once

#include <array>

#include <QWidget>

#include "SorvaneMac/Shell/Workspace.h"

class QPlainTextEdit;
class QPushButton;
class QStackedWidget;

namespace sorvane {

class FormView;
class GuidePane;

/// The pane on the right: the form of the screen, its guide, and the researcher's notes on it.
class InspectorView final : public QWidget {
public:
    explicit InspectorView(Workspace& workspace);
    ~InspectorView() override;

    void refresh();
    void takeFocus();

private:
    QWidget* tabs();
    QWidget* notesPane();
    void showNotes(StudioScreen screen);
    void writeNote();

    Workspace& workspace_;
    std::array<QPushButton*, 3> tabButtons_{};
    QStackedWidget* stack_;
    FormView* form_;
    GuidePane* guide_;
    QPlainTextEdit* note_;
    QPushButton* stageNote_;
};

}  // namespace sorvane
