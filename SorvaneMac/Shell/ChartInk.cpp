#include "SorvaneMac/Shell/ChartInk.h"

#include <algorithm>
#include <cmath>

#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr double labelSize = 11.5;

/// The hues of Okabe and Ito (2008), Color Universal Design, in shades that carry on each ground.
constexpr std::array onLight = {"#2f6ca8", "#d55e00", "#009e73", "#b65c95",
                                "#e69f00", "#56b4e9", "#5a5f66", "#8a7a00"};
constexpr std::array onDark = {"#6aa5e0", "#f08a4b", "#3fc79a", "#e39cc5",
                               "#f2c14e", "#a5daf7", "#b9c0ca", "#d9d26a"};

std::array<QColor, 8> seriesColors(const std::array<const char*, 8>& names) {
    std::array<QColor, 8> colors;
    std::copy(names.begin(), names.end(), colors.begin());
    return colors;
}

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
            .series = seriesColors(dark ? onDark : onLight),
            .low = dark ? "#f08a4b" : "#b8500b",
            .middle = dark ? "#2f353d" : "#f6f7f9",
            .high = dark ? "#6aa5e0" : "#1f5a96",
            .font = {}};
}

/// Light as the eye takes it, from 0 to 1.
double luminance(const QColor& color) {
    const auto linear = [](float part) {
        return std::pow(static_cast<double>(part), 2.2);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

}  // namespace

QColor ChartInk::shade(double share) const {
    const QColor& end = share < 0.0 ? low : high;
    const auto part = static_cast<float>(std::min(std::abs(share), 1.0));
    const auto mix = [part](float from, float to) {
        return from + (to - from) * part;
    };
    return QColor::fromRgbF(mix(middle.redF(), end.redF()), mix(middle.greenF(), end.greenF()),
                            mix(middle.blueF(), end.blueF()));
}

QColor ChartInk::textOn(const QColor& fill) {
    // Where black and white text have the same contrast by the rule of WCAG 2.
    return luminance(fill) > 0.179 ? QColor("#101418") : QColor(Qt::white);
}

ChartInk ChartInk::screen() {
    ChartInk ink = inkFor(Theme::isDark() ? Appearance::dark : Appearance::light);
    ink.font = Theme::faces(labelSize);
    return ink;
}

ChartInk ChartInk::print() {
    ChartInk ink = inkFor(Appearance::light);
    ink.ground = Qt::white;
    ink.text = Qt::black;
    ink.quiet = "#333333";
    ink.grid = "#d5d5d5";
    ink.showsGrid = false;
    ink.middle = Qt::white;
    ink.font = Theme::faces(labelSize);
    return ink;
}

}  // namespace sorvane
