#pragma once

#include <QWidget>

#include "SorvaneMac/State/StudioState.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace sorvane {

/// Covers the window while a long computation runs, and says which.
class ComputingOverlay final : public QWidget {
public:
    ComputingOverlay(QWidget* window, StudioState& state);

    void refresh();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    StudioState& state_;
    QLabel* label_;
    QProgressBar* progress_;
    QPushButton* cancel_;
};

}  // namespace sorvane
