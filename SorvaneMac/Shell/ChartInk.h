#pragma once

#include <array>
#include <cstddef>

#include <QColor>
#include <QFont>

namespace sorvane {

/// The colours and type in which a chart is drawn, in units of the design.
struct ChartInk {
    QColor ground;
    QColor text;
    QColor quiet;
    QColor grid;
    /// Lines that only help the eye; none on paper.
    bool showsGrid = true;
    /// The data.
    QColor primary;
    QColor primaryFill;
    /// What is set apart; told from the data also by readers who do not see red or green.
    QColor apart;
    /// One per series, told apart by readers of every colour vision.
    std::array<QColor, 8> series;
    /// The ends and the quiet middle of a scale of colours.
    QColor low;
    QColor middle;
    QColor high;
    QFont font;

    const QColor& seriesColor(std::size_t at) const { return series[at % series.size()]; }
    /// Between the middle and the ends; share from -1 (low) over 0 (middle) to 1 (high).
    QColor shade(double share) const;
    /// What can be read on a filled ground.
    static QColor textOn(const QColor& fill);

    /// For the window, in the appearance that stands.
    static ChartInk screen();
    /// For paper: dark on white, whatever the window.
    static ChartInk print();
};

}  // namespace sorvane
