#pragma once

#include <QColor>
#include <QFont>

namespace sorvane {

/// The colours and type in which a chart is drawn.
struct ChartInk {
    QColor ground;
    QColor text;
    QColor quiet;
    QColor grid;
    /// The data.
    QColor primary;
    QColor primaryFill;
    /// What is set apart; told from the data also by readers who do not see red or green.
    QColor apart;
    QFont font;

    /// For the window, in the appearance that stands.
    static ChartInk screen();
    /// For paper: dark on white, whatever the window.
    static ChartInk print();
};

}  // namespace sorvane
