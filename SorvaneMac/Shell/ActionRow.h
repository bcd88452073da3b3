#pragma once

#include <functional>

#include <QWidget>

#include "SorvaneMac/Screens/ScreenContent.h"

class QBoxLayout;
class QLabel;
class QPushButton;

namespace sorvane {

class StudioState;
class WrapLayout;

/// What can be done with one finding: stage it, copy its sentence, copy its tables.
class ActionRow final : public QWidget {
public:
    explicit ActionRow(StudioState& state);

    void show(const Finding& finding);
    /// Reads anew whether the finding is staged.
    void refresh();
    /// Puts the finding into the report, with its figure drawn for paper.
    void stage();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void offerTables();

    StudioState& state_;
    QBoxLayout* row_;
    WrapLayout* buttons_;
    Finding finding_;
    QLabel* title_;
    QPushButton* add_;
    QPushButton* copyText_;
    QPushButton* copyTable_;
};

}  // namespace sorvane
