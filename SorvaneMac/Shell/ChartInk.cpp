#include "SorvaneMac/Shell/ChartInk.h"

#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr double labelSize = 11.5;

ChartInk inkFor(Appearance appearance) {
    const ThemeColors& colors = Theme::colors(appearance);
    const bool dark = appearance == Appearance::dark;
    return {.ground = colors.card,
            .text = colors.text,
            .quiet = colors.quietText,
            .grid = colors.border,
            .primary = dark ? "#6aa5e0" : "#2f6ca8",
            .primaryFill = dark ? "#2a4a6b" : "#c9dcef",
            .apart = dark ? "#f0a04b" : "#b8600b",
            .font = {}};
}

}  // namespace

ChartInk ChartInk::screen() {
    ChartInk ink = inkFor(Theme::isDark() ? Appearance::dark : Appearance::light);
    ink.font = Theme::font(labelSize);
    return ink;
}

ChartInk ChartInk::print() {
    ChartInk ink = inkFor(Appearance::light);
    ink.ground = Qt::white;
    ink.text = Qt::black;
    ink.quiet = "#333333";
    ink.grid = "#d5d5d5";
    ink.font = Theme::faces(labelSize);
    return ink;
}

}  // namespace sorvane
