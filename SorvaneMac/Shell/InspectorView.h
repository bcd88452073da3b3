#pragma once

#include <array>
#include <optional>

#include <QWidget>

#include "SorvaneMac/Shell/Workspace.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;
class QVBoxLayout;

namespace sorvane {

class FormView;

/// The pane on the right: the form of the screen, its guide, and the researcher's notes on it.
class InspectorView final : public QWidget {
public:
    explicit InspectorView(Workspace& workspace);
    ~InspectorView() override;

    void refresh();
    void takeFocus();

private:
    QWidget* tabs();
    QWidget* guidePane();
    QWidget* notesPane();
    void showGuide(StudioScreen screen);
    void showNotes(StudioScreen screen);
    void writeNote();

    Workspace& workspace_;
    std::array<QPushButton*, 3> tabButtons_{};
    QStackedWidget* stack_;
    FormView* form_;
    QVBoxLayout* guide_ = nullptr;
    std::optional<StudioScreen> guideOf_;
    QPlainTextEdit* note_;
    QPushButton* stageNote_;
};

}  // namespace sorvane
